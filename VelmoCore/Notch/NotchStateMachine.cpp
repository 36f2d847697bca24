#include "VelmoCore/Notch/NotchStateMachine.h"

namespace velmo {
namespace {

using enum NotchPresentation;

NotchPresentation hovered(HoverBehavior hover)
{
    switch (hover) {
    case HoverBehavior::none:
        return collapsed;
    case HoverBehavior::preview:
        return preview;
    case HoverBehavior::expand:
        return expanded;
    }
    return collapsed;
}

/// Where leaving the panel, or clicking beside it, leads. A preview always goes, an open panel if
/// the user wants that, and a drag in progress outlives it.
NotchPresentation closed(NotchPresentation from, bool closesOpenPanel)
{
    switch (from) {
    case collapsed:
    case preview:
        return collapsed;
    case dropTarget:
        return dropTarget;
    case expanded:
    case dropResult:
        return closesOpenPanel ? collapsed : from;
    }
    return from;
}

NotchPresentation nextPresentation(const NotchState &state, NotchEvent event,
                                   const NotchBehavior &behavior)
{
    const NotchPresentation from = state.presentation;
    switch (event) {
    case NotchEvent::hoverEntered:
        return from == collapsed ? hovered(behavior.hover) : from;
    case NotchEvent::hoverExited:
        return closed(from, behavior.closeOnMouseLeave);
    case NotchEvent::tap:
        return !isOpen(from) && behavior.openOnClick ? expanded : from;
    case NotchEvent::hotKey:
        return isOpen(from) ? collapsed : expanded;
    case NotchEvent::openRequested:
        return expanded;
    case NotchEvent::escape:
    case NotchEvent::dismiss:
        return collapsed;
    case NotchEvent::clickOutside:
        return closed(from, behavior.closeOnClickOutside);
    case NotchEvent::dragEntered:
        return dropTarget;
    case NotchEvent::dragExited:
        return from == dropTarget ? state.beforeDrag.value_or(collapsed) : from;
    case NotchEvent::dropCompleted:
        return dropResult;
    }
    return from;
}

} // namespace

NotchState NotchStateMachine::reduce(const NotchState &state, NotchEvent event,
                                     const NotchBehavior &behavior)
{
    NotchState next{nextPresentation(state, event, behavior), std::nullopt};
    if (next.presentation == dropTarget) {
        // Only an expanded panel is worth returning to: a peek or an old result has had its time.
        if (state.presentation == dropTarget)
            next.beforeDrag = state.beforeDrag;
        else if (state.presentation == expanded)
            next.beforeDrag = expanded;
    }
    return next;
}

} // namespace velmo
