#pragma once

#include "VelmoCore/HotKeys/KeyCombo.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <variant>

namespace velmo {

/// Keys that reach us whatever application has the focus.
class HotKeyGrabber {
public:
    using ID = std::uint32_t;

    struct Grabbed {};
    struct AlreadyTaken {};
    struct Failed {
        int code = 0; ///< the desktop's own error number
    };
    using Result = std::variant<Grabbed, AlreadyTaken, Failed>;

    virtual ~HotKeyGrabber() = default;

    virtual Result grab(ID id, const KeyCombo &combo) = 0;
    virtual void release(ID id) = 0;
    /// The key code of the key with the desktop's own scan code, by what it types without
    /// modifiers.
    virtual std::optional<std::uint32_t> keyCode(std::uint32_t scanCode) const = 0;

    /// Runs on the main thread when a grabbed key goes down, once a press (no auto-repeat).
    std::function<void(ID)> onPressed;
    /// The keyboard has another layout and a grab didn't outlive that; it is released.
    std::function<void(ID, Result)> onLost;
    /// The keyboard has another layout: what couldn't be grabbed may be now.
    std::function<void()> onKeyboardChanged;
};

} // namespace velmo
