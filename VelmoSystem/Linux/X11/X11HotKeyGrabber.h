#pragma once

#include "VelmoSystem/Linux/X11/X11Connection.h"
#include "VelmoSystem/Ports/HotKeyGrabber.h"

#include <set>

namespace velmo {

/// Passive grabs on the root window, renewed when the keyboard's layout changes. The modifiers are
/// Control, Alt, Shift and Super; Caps Lock, Num Lock and Scroll Lock don't matter.
class X11HotKeyGrabber : public HotKeyGrabber {
public:
    explicit X11HotKeyGrabber(X11Connection &connection);
    ~X11HotKeyGrabber() override;

    /// A combination that another id holds is taken as well. A key that the layout doesn't have
    /// fails with the X error BadValue (2).
    Result grab(ID id, const KeyCombo &combo) override;
    void release(ID id) override;
    std::optional<std::uint32_t> keyCode(std::uint32_t scanCode) const override;

private:
    /// What the server knows a combination as.
    struct Key {
        xcb_keycode_t code = 0;
        std::uint16_t modifiers = 0;

        bool operator==(const Key &) const = default;
    };
    struct Entry {
        KeyCombo combo;
        Key key;
    };
    /// The modifier bits of the present layout.
    struct ModifierMap {
        std::uint16_t option = XCB_MOD_MASK_1;
        std::uint16_t command = XCB_MOD_MASK_4;
        std::set<std::uint16_t> locks;

        bool operator==(const ModifierMap &) const = default;
    };

    void readKeyboard();
    void readModifiers(const std::function<std::uint32_t(xcb_keycode_t)> &keysymOf);
    void watchKeyboard();
    void keyboardChanged();
    void followKeyboard();
    std::optional<Key> keyOf(const KeyCombo &combo) const;
    /// Each combination of lock keys, none of them included.
    std::vector<std::uint16_t> lockVariants() const;
    Result grabKey(Key key);
    void releaseKey(Key key);
    void keyPressed(const xcb_key_press_event_t &press);

    X11Connection &m_connection;
    std::vector<std::pair<xcb_keycode_t, std::vector<std::uint32_t>>> m_keysyms; ///< a key's levels
    ModifierMap m_modifiers;
    std::map<ID, Entry> m_entries;
    std::set<xcb_keycode_t> m_pressed;
    bool m_isRereadPending = false;
    std::vector<X11Connection::Subscription> m_subscriptions;
    QObject m_context;
};

} // namespace velmo
