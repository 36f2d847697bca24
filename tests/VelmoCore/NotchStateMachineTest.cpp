#include "VelmoCore/Notch/NotchStateMachine.h"

#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

namespace velmo {
namespace {

using enum NotchPresentation;

/// A row a event, a cell a presentation it comes in, in the order of the enumeration. A cell holds
/// the initial of the next presentation (Collapsed, Preview, Expanded, Target, Result); two
/// initials behind a setting are for on and off, three for its values in order. `Saved` is
/// `beforeDrag`, else Collapsed; `T+` remembers Expanded.
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
    {NotchEvent::dragEntered, {"T", "T", "T+", "T", "T"}},
    {NotchEvent::dragExited, {"C", "P", "E", "Saved", "R"}},
    {NotchEvent::dropCompleted, {"R", "R", "R", "R", "R"}},
    {NotchEvent::dismiss, {"C", "C", "C", "C", "C"}},
};

NotchPresentation named(char initial)
{
    return allNotchPresentations.at(std::string_view("CPETR").find(initial));
}

NotchState expected(std::string_view cell, const NotchState &from, const NotchBehavior &behavior)
{
    if (cell == "Saved")
        return {from.beforeDrag.value_or(collapsed), std::nullopt};
    if (cell == "T+")
        return {dropTarget, expanded};
    const auto choices = cell.substr(cell.find(' ') + 1);
    const auto pick = [&](bool isOn) { return named(choices[isOn ? 0 : 1]); };
    NotchPresentation next = named(choices[0]);
    if (cell.starts_with("hover"))
        next = named(choices[static_cast<std::size_t>(behavior.hover)]);
    else if (cell.starts_with("leave"))
        next = pick(behavior.closeOnMouseLeave);
    else if (cell.starts_with("click"))
        next = pick(behavior.openOnClick);
    else if (cell.starts_with("outside"))
        next = pick(behavior.closeOnClickOutside);
    const bool dragGoesOn = from.presentation == dropTarget && next == dropTarget;
    return {next, dragGoesOn ? from.beforeDrag : std::nullopt};
}

std::vector<NotchBehavior> allBehaviors()
{
    std::vector<NotchBehavior> all;
    for (const HoverBehavior hover :
         {HoverBehavior::none, HoverBehavior::preview, HoverBehavior::expand}) {
        for (int bits = 0; bits < 8; ++bits)
            all.push_back({hover, (bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0});
    }
    return all;
}

TEST(NotchStateMachine, FollowsTheTableUnderEverySetting)
{
    for (const auto &[event, cells] : table) {
        for (std::size_t column = 0; column < cells.size(); ++column) {
            for (const auto beforeDrag : {std::optional<NotchPresentation>{}, {expanded}}) {
                const NotchState from{allNotchPresentations[column], beforeDrag};
                for (const NotchBehavior &behavior : allBehaviors()) {
                    ASSERT_EQ(NotchStateMachine::reduce(from, event, behavior),
                              expected(cells[column], from, behavior))
                        << boost::describe::enum_to_string(event, "?") << " on "
                        << testing::PrintToString(from) << ", cell " << cells[column];
                }
            }
        }
    }
}

TEST(NotchStateMachine, ReturnsFromADragOnlyToAnExpandedPanel)
{
    const NotchBehavior behavior{HoverBehavior::preview, true, true, true};
    for (const NotchPresentation start : allNotchPresentations) {
        NotchState state{start, std::nullopt};
        for (const NotchEvent event :
             {NotchEvent::dragEntered, NotchEvent::hoverExited, NotchEvent::tap,
              NotchEvent::clickOutside, NotchEvent::dragEntered, NotchEvent::dragExited})
            state = NotchStateMachine::reduce(state, event, behavior);
        EXPECT_EQ(state, (NotchState{start == expanded ? expanded : collapsed, std::nullopt}))
            << testing::PrintToString(start);
    }
}

} // namespace
} // namespace velmo
