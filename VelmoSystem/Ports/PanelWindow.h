#pragma once

#include "VelmoCore/Foundation/Geometry.h"
#include "VelmoSystem/FileProcessing/DropReader.h"
#include "VelmoSystem/Ports/Pointer.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QWindow;

namespace velmo {

/// A borderless window above all others, on every desktop, that the user's window list doesn't show
/// and that takes the focus only when asked to.
class PanelWindow {
public:
    /// What to do with a drop that the window has accepted. Its source is asked without waiting.
    struct DropHandler {
        /// It fell, and what it holds is on its way. For the window the drag has left.
        std::function<void()> began;
        /// That has come, or nothing has. False if nothing of it can be taken.
        std::function<bool(const DropReader::Contents &)> ended;
    };

    virtual ~PanelWindow() = default;

    virtual WindowID id() const = 0;
    virtual void setFrame(const Rect &frame) = 0;
    virtual Rect frame() const = 0;
    /// Shows the window and puts it above all others.
    virtual void orderFront() = 0;
    virtual void orderOut() = 0;
    /// Whether the window is mapped and stands on the present desktop.
    virtual bool isOnActiveSpace() const = 0;

    /// The part of the desktop where the window takes the pointer; elsewhere it passes through.
    /// Nothing: it passes through everywhere.
    virtual void setInteractiveZone(const std::optional<Rect> &zone) = 0;
    /// Where nothing blends windows, the window is cut to these rectangles instead of being
    /// transparent around them. Without effect on a desktop with a compositor.
    virtual void setOutline(const std::vector<Rect> &rows) = 0;

    /// Takes the keyboard, and remembers who had it.
    virtual void makeKey() = 0;
    /// Gives the keyboard back to the window that had it. Does nothing without the keyboard.
    virtual void resignKey() = 0;
    virtual bool isKey() const = 0;

    virtual void setDropHandler(DropHandler handler) = 0;
};

/// Makes panel windows of plain ones.
class PanelWindowFactory {
public:
    virtual ~PanelWindowFactory() = default;

    /// `window` outlives the panel window and isn't shown yet.
    virtual std::unique_ptr<PanelWindow> adopt(QWindow &window) = 0;
};

} // namespace velmo
