#include "VelmoCore/Notch/NotchStateMachine.h"

#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <string_view>

namespace velmo {
namespace {

using enum NotchPresentation;

/// A row an event, a cell a presentation it comes in, in the order of the enumeration. A cell holds
/// the initial of the next presentation (Collapsed, Preview, Expanded, Target, Result); two
/// initials behind a setting are for on and off, three for its values in order. `Saved` is
/// `beforeDrag`, else Collapsed.
struct Row {
    NotchEvent event;
    std::array<std::string_view, 5> next;
};
constexpr Row table[] = {
    {NotchEvent::hoverEntered, {"hover CPE", "P", "E", "T", "R"}},
    {NotchEvent::hoverExited, {"C", "C", "leave CE", "T", "leave CR"}},
    {NotchEvent::tap, {"click EC", "click EP", "E", "T", "R"}},
    {NotchEvent::hotKey, {"E", "E", "C", "C", "C"}},
    {NotchEvent::openRequested, {"E", "E", "E", "E", "E"}},
    {NotchEvent::escape, {"C", "C", "C", "C", "C"}},
    {NotchEvent::clickOutside, {"C", "C", "outside CE", "T", "outside CR"}},
    {NotchEvent::dragEntered, {"T", "T", "T", "T", "T"}},
    {NotchEvent::dragExited, {"C", "P", "E", "Saved", "R"}},
    {NotchEvent::dropCompleted, {"R", "R", "R", "R", "R"}},
    {NotchEvent::dismiss, {"C", "C", "C", "C", "C"}},
};

NotchPresentation expected(std::string_view cell, const NotchState &from,
                           const NotchBehavior &behavior)
{
    if (cell == "Saved")
        return from.beforeDrag.value_or(collapsed);
    std::size_t choice = 0;
    if (cell.starts_with("hover"))
        choice = static_cast<std::size_t>(behavior.hover);
    else if (cell.starts_with("leave"))
        choice = behavior.closeOnMouseLeave ? 0 : 1;
    else if (cell.starts_with("click"))
        choice = behavior.openOnClick ? 0 : 1;
    else if (cell.starts_with("outside"))
        choice = behavior.closeOnClickOutside ? 0 : 1;
    const char initial = cell[cell.find(' ') + 1 + choice];
    return allNotchPresentations.at(std::string_view("CPETR").find(initial));
}

TEST(NotchStateMachine, FollowsTheTableUnderEverySetting)
{
    for (const auto &[event, cells] : table)
        for (std::size_t column = 0; column < cells.size(); ++column)
            for (int bits = 0; bits < 48; ++bits) {
                const NotchBehavior behavior{static_cast<HoverBehavior>(bits / 16), (bits & 1) != 0,
                                             (bits & 2) != 0, (bits & 4) != 0};
                const NotchState from{allNotchPresentations[column],
                                      (bits & 8) != 0 ? std::optional(expanded) : std::nullopt};
                ASSERT_EQ(NotchStateMachine::reduce(from, event, behavior).presentation,
                          expected(cells[column], from, behavior))
                    << boost::describe::enum_to_string(event, "?") << " on "
                    << testing::PrintToString(from) << ", cell " << cells[column];
            }
}

TEST(NotchStateMachine, ReturnsFromADragOnlyToAnExpandedPanel)
{
    const NotchBehavior behavior{HoverBehavior::preview, true, true, true};
    const auto after = [&](NotchState state, std::initializer_list<NotchEvent> events) {
        for (const NotchEvent event : events)
            state = NotchStateMachine::reduce(state, event, behavior);
        return state;
    };
    using enum NotchEvent;
    for (const NotchPresentation start : allNotchPresentations)
        EXPECT_EQ(after({start, {}}, {dragEntered, hoverExited, tap, dragEntered, dragExited}),
                  (NotchState{start == expanded ? expanded : collapsed, std::nullopt}))
            << testing::PrintToString(start);
    // However else a drag ends, nothing is left to return to.
    for (const auto &[event, end] :
         {std::pair(escape, collapsed), {openRequested, expanded}, {dropCompleted, dropResult}})
        EXPECT_EQ(after({expanded, {}}, {dragEntered, event}), (NotchState{end, std::nullopt}))
            << boost::describe::enum_to_string(event, "?");
}

} // namespace
} // namespace velmo
