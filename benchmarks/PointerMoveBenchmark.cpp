// What one pointer move costs a panel: its layout context from values at hand, the two zones, and
// whether they hold the pointer. `allocations` must stay 0.

#include "VelmoCore/Notch/NotchLayout.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <new>

namespace {

// Single-threaded: the benchmarks here start no threads.
std::size_t allocationCount = 0;

} // namespace

void *operator new(std::size_t size)
{
    ++allocationCount;
    if (void *memory = std::malloc(size))
        return memory;
    throw std::bad_alloc();
}
void operator delete(void *memory) noexcept
{
    std::free(memory);
}
void operator delete(void *memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace velmo {
namespace {

/// What a panel has at hand when the pointer moves.
struct Panel {
    NotchPresentation presentation = NotchPresentation::collapsed;
    std::optional<CollapsedSides> sides;
    bool hasMailBanner = false;
    std::optional<double> moduleWidth;
    NotchMetrics metrics = NotchGeometry::metrics({.frame = {0, 0, 1728, 1117},
                                                   .visibleFrame = {0, 0, 1728, 1079},
                                                   .safeAreaTop = 38,
                                                   .auxiliaryTopLeftWidth = 764,
                                                   .auxiliaryTopRightWidth = 764});

    NotchLayoutContext layoutContext() const
    {
        return {.metrics = metrics,
                .hasMailBanner = hasMailBanner,
                .collapsedSides = sides,
                .expandedContentWidth = moduleWidth};
    }
};

void pointerMove(benchmark::State &state, Panel panel)
{
    Point pointer{600, 1100};
    const std::size_t before = allocationCount;
    for (auto _ : state) {
        pointer.x = pointer.x > 1100 ? 600 : pointer.x + 1;
        benchmark::DoNotOptimize(panel);
        const NotchLayoutContext context = panel.layoutContext();
        benchmark::DoNotOptimize(
            NotchLayout::hoverTriggerZone(panel.presentation, context).contains(pointer));
        benchmark::DoNotOptimize(
            NotchLayout::hoverZone(panel.presentation, context).contains(pointer));
    }
    const std::size_t allocations = allocationCount - before;
    state.counters["allocations"] = static_cast<double>(allocations);
    if (allocations > 0)
        state.SkipWithError("a pointer move allocates");
}

using enum NotchPresentation;
BENCHMARK_CAPTURE(pointerMove, collapsed, Panel{});
BENCHMARK_CAPTURE(pointerMove, sides, Panel{.sides = CollapsedSides{120, 64}});
BENCHMARK_CAPTURE(pointerMove, mailBanner, Panel{.hasMailBanner = true});
BENCHMARK_CAPTURE(pointerMove, preview, Panel{.presentation = preview});
BENCHMARK_CAPTURE(pointerMove, expanded, Panel{.presentation = expanded, .moduleWidth = 900});
BENCHMARK_CAPTURE(pointerMove, dropTarget, Panel{.presentation = dropTarget, .moduleWidth = 900});

} // namespace
} // namespace velmo
