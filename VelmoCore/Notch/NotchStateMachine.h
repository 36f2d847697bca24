#pragma once

#include <boost/describe.hpp>

#include <array>
#include <optional>

namespace velmo {

/// The two surfaces of a drag: it is over the panel, or something was dropped.
enum class ContextKind { dropTarget, dropResult };
BOOST_DESCRIBE_ENUM(ContextKind, dropTarget, dropResult)

/// What a panel shows.
enum class NotchPresentation {
    collapsed, ///< blends with the notch
    preview,   ///< a small peek on hover; counts as not open
    expanded,  ///< the full panel with a module
    dropTarget,
    dropResult,
};
BOOST_DESCRIBE_ENUM(NotchPresentation, collapsed, preview, expanded, dropTarget, dropResult)

inline constexpr std::array allNotchPresentations = {
    NotchPresentation::collapsed, NotchPresentation::preview, NotchPresentation::expanded,
    NotchPresentation::dropTarget, NotchPresentation::dropResult};

constexpr bool isOpen(NotchPresentation presentation)
{
    return presentation != NotchPresentation::collapsed &&
           presentation != NotchPresentation::preview;
}

/// The surface of a contextual presentation, nothing for the others.
constexpr std::optional<ContextKind> contextKind(NotchPresentation presentation)
{
    switch (presentation) {
    case NotchPresentation::dropTarget:
        return ContextKind::dropTarget;
    case NotchPresentation::dropResult:
        return ContextKind::dropResult;
    default:
        return std::nullopt;
    }
}

/// What resting the pointer on a collapsed panel does.
enum class HoverBehavior { none, preview, expand };
BOOST_DESCRIBE_ENUM(HoverBehavior, none, preview, expand)

/// The user's settings that a transition depends on.
struct NotchBehavior {
    HoverBehavior hover;
    bool openOnClick;
    bool closeOnMouseLeave;
    bool closeOnClickOutside;
};

struct NotchState {
    NotchPresentation presentation = NotchPresentation::collapsed;
    /// What to return to when a drag leaves without a drop.
    std::optional<NotchPresentation> beforeDrag;

    bool operator==(const NotchState &) const = default;
};
BOOST_DESCRIBE_STRUCT(NotchState, (), (presentation, beforeDrag))

enum class NotchEvent {
    hoverEntered,
    hoverExited,
    tap,
    hotKey,
    openRequested,
    escape,
    clickOutside,
    dragEntered,
    dragExited,
    dropCompleted,
    dismiss,
};
BOOST_DESCRIBE_ENUM(NotchEvent, hoverEntered, hoverExited, tap, hotKey, openRequested, escape,
                    clickOutside, dragEntered, dragExited, dropCompleted, dismiss)

namespace NotchStateMachine {

/// The next state of a panel. Every change of a presentation passes through here.
NotchState reduce(const NotchState &state, NotchEvent event, const NotchBehavior &behavior);

} // namespace NotchStateMachine
} // namespace velmo
