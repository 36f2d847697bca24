#include "VelmoCore/Clipboard/ClipboardStore.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>

/// What the main thread pays for a copy and for a key of a search.
namespace velmo {
namespace {

/// Time that never passes: nothing is saved but by `flush`.
class StillScheduler : public Scheduler {
public:
    Date now() const override { return Date{1'773'480'413s}; }
    Seconds elapsed() const override { return 0s; }
    ScheduledTask after(Seconds, std::function<void()>) override { return {}; }
    ScheduledTask at(Date, std::function<void()>) override { return {}; }
    void post(std::function<void()>) override {}
};

ClipItem clip(int number, qsizetype length)
{
    static const QString line =
        QStringLiteral("Uma linha copiada, com acentuação e “aspas”, de um Programa qualquer. ");
    const QString text = QString::number(number) + line.repeated(length / line.size() + 1);
    return *ClipItems::fromText(text.first(length), {QStringLiteral("Editor"), {}},
                                StillScheduler().now());
}

void search(benchmark::State &state, const QString &query)
{
    StillScheduler scheduler;
    ClipboardStore store(std::nullopt, std::nullopt, scheduler);
    store.setLimits(10'000, 30);
    for (int number = 0; number < 10'000; ++number)
        store.add(clip(number, state.range(0)));
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(store.items(query));
}

void searchOneLetter(benchmark::State &state)
{
    search(state, QStringLiteral("q"));
}

void searchRare(benchmark::State &state)
{
    search(state, QStringLiteral("9999uma"));
}

/// The text as it comes from the pasteboard, into a full history of the longest texts.
void copyLongText(benchmark::State &state)
{
    const QTemporaryDir folder;
    StillScheduler scheduler;
    ClipboardStore store(folder.path(), DataCipher(DataCipher::generateKeyData()), scheduler);
    int number = 0;
    while (number < 200)
        store.add(clip(number++, ClipItems::longestText));
    for ([[maybe_unused]] auto _ : state)
        store.add(clip(number++, state.range(0)));
}

BENCHMARK(searchOneLetter)->Arg(120)->Arg(500)->Unit(benchmark::kMillisecond);
BENCHMARK(searchRare)->Arg(120)->Arg(500)->Unit(benchmark::kMillisecond);
BENCHMARK(copyLongText)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace velmo
