#include "VelmoSystem/Linux/X11/X11HotKeyGrabber.h"

#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/HotKeys/KeyNames.h"

#include <X11/keysym.h>
#include <algorithm>
#include <array>
// The C header has fields of that name.
#ifdef __clang__
#pragma clang diagnostic ignored "-Wkeyword-macro"
#endif
#define explicit isExplicit
#include <xcb/xkb.h>
#undef explicit

namespace velmo {

namespace {

constexpr int badValue = XCB_VALUE;
constexpr std::uint16_t allModifiers = 0xff; // the other bits of an event's state are buttons

} // namespace

X11HotKeyGrabber::X11HotKeyGrabber(X11Connection &connection) : m_connection(connection)
{
    m_subscriptions = {
        connection.subscribe(XCB_KEY_PRESS,
                             [this](const xcb_generic_event_t &event) {
                                 keyPressed(reinterpret_cast<const xcb_key_press_event_t &>(event));
                             }),
        connection.subscribe(
            XCB_KEY_RELEASE,
            [this](const xcb_generic_event_t &event) {
                m_pressed.erase(reinterpret_cast<const xcb_key_release_event_t &>(event).detail);
            }),
        connection.subscribe(XCB_MAPPING_NOTIFY,
                             [this](const xcb_generic_event_t &) { keyboardChanged(); })};
    watchKeyboard();
    readKeyboard();
}

X11HotKeyGrabber::~X11HotKeyGrabber()
{
    while (!m_entries.empty())
        release(m_entries.begin()->first);
}

// XKB keeps the releases out of a held key's repetition, and reports layout changes.
void X11HotKeyGrabber::watchKeyboard()
{
    auto *server = m_connection.handle();
    const auto *extension = xcb_get_extension_data(server, &xcb_xkb_id);
    if (!extension || !extension->present)
        return;
    const X11Reply<xcb_xkb_use_extension_reply_t> use(
        xcb_xkb_use_extension_reply(server, xcb_xkb_use_extension(server, 1, 0), nullptr));
    if (!use || !use->supported)
        return;
    const auto cookie = xcb_xkb_per_client_flags(
        server, XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT,
        XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT, 0, 0, 0);
    const X11Reply<xcb_xkb_per_client_flags_reply_t> flags(
        xcb_xkb_per_client_flags_reply(server, cookie, nullptr));
    if (!flags || !(flags->value & XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT))
        qCWarning(Log::input, "Servidor X sem repetição detectável: um atalho segurado repete");

    constexpr std::uint16_t changes =
        XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    constexpr std::uint16_t parts = XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
    xcb_xkb_select_events(server, XCB_XKB_ID_USE_CORE_KBD, changes, 0, changes, parts, parts,
                          nullptr);
    m_subscriptions.push_back(
        m_connection.subscribe(extension->first_event, [this](const xcb_generic_event_t &event) {
            const auto kind = event.pad0; // all of XKB's events share one response type
            if (kind == XCB_XKB_NEW_KEYBOARD_NOTIFY || kind == XCB_XKB_MAP_NOTIFY)
                keyboardChanged();
        }));
}

HotKeyGrabber::Result X11HotKeyGrabber::grab(ID id, const KeyCombo &combo)
{
    const auto key = keyOf(combo);
    if (!key)
        return Failed{badValue};
    for (const auto &[other, entry] : m_entries)
        if (other != id && entry.key == key)
            return AlreadyTaken{};
    release(id);
    const Result result = grabKey(*key);
    if (std::holds_alternative<Grabbed>(result))
        m_entries[id] = {combo, *key};
    return result;
}

void X11HotKeyGrabber::release(ID id)
{
    const auto found = m_entries.find(id);
    if (found == m_entries.end())
        return;
    releaseKey(found->second.key);
    m_entries.erase(found);
}

std::optional<std::uint32_t> X11HotKeyGrabber::keyCode(std::uint32_t scanCode) const
{
    for (const auto &[code, keysyms] : m_keysyms) {
        if (code != scanCode)
            continue;
        for (const std::uint32_t keysym : keysyms) // a further level where the first has no name
            if (const auto known = KeyNames::keyCode(keysym))
                return known;
    }
    return std::nullopt;
}

HotKeyGrabber::Result X11HotKeyGrabber::grabKey(Key key)
{
    auto *server = m_connection.handle();
    std::vector<xcb_void_cookie_t> cookies;
    for (const std::uint16_t locks : lockVariants())
        cookies.push_back(xcb_grab_key_checked(server, false, m_connection.root(),
                                               key.modifiers | locks, key.code, XCB_GRAB_MODE_ASYNC,
                                               XCB_GRAB_MODE_ASYNC));
    Result result = Grabbed{};
    for (const auto cookie : cookies) {
        const X11Reply<xcb_generic_error_t> error(xcb_request_check(server, cookie));
        if (error && error->error_code == XCB_ACCESS)
            result = AlreadyTaken{};
        else if (error)
            result = Failed{error->error_code};
    }
    if (const int broken = xcb_connection_has_error(server))
        result = Failed{broken};
    if (!std::holds_alternative<Grabbed>(result))
        releaseKey(key); // only our own grabs go
    return result;
}

void X11HotKeyGrabber::releaseKey(Key key)
{
    for (const std::uint16_t locks : lockVariants())
        xcb_ungrab_key(m_connection.handle(), key.code, m_connection.root(), key.modifiers | locks);
}

void X11HotKeyGrabber::keyPressed(const xcb_key_press_event_t &press)
{
    if (!m_pressed.insert(press.detail).second)
        return; // repeats while it's held
    std::uint16_t modifiers = press.state & allModifiers;
    for (const std::uint16_t lock : m_modifiers.locks)
        modifiers &= std::uint16_t(~lock);
    const Key key{press.detail, modifiers};
    for (const auto &[id, entry] : m_entries) {
        if (entry.key != key)
            continue;
        if (onPressed)
            onPressed(id);
        return; // the entries may be others now
    }
}

// One change of the layout comes as several events.
void X11HotKeyGrabber::keyboardChanged()
{
    if (std::exchange(m_isRereadPending, true))
        return;
    QMetaObject::invokeMethod(
        &m_context,
        [this] {
            m_isRereadPending = false;
            followKeyboard();
        },
        Qt::QueuedConnection);
}

void X11HotKeyGrabber::followKeyboard()
{
    const auto keysyms = std::exchange(m_keysyms, {});
    auto modifiers = std::exchange(m_modifiers, {});
    readKeyboard();
    // Often it's only another keyboard that types: no grab is then let go, not even for the moment
    // in which the rest of a shortcut may be pressed.
    if (m_keysyms == keysyms && m_modifiers == modifiers)
        return;
    std::swap(m_modifiers, modifiers);
    for (const auto &[id, entry] : m_entries)
        releaseKey(entry.key);
    std::swap(m_modifiers, modifiers);
    std::vector<std::pair<ID, Result>> lost;
    for (auto &[id, entry] : m_entries) {
        const auto key = keyOf(entry.combo);
        const Result result = key ? grabKey(*key) : Failed{badValue};
        if (std::holds_alternative<Grabbed>(result))
            entry.key = *key;
        else
            lost.emplace_back(id, result);
    }
    for (const auto &[id, result] : lost)
        m_entries.erase(id);
    for (const auto &[id, result] : lost)
        if (onLost)
            onLost(id, result);
    if (onKeyboardChanged)
        onKeyboardChanged();
}

void X11HotKeyGrabber::readKeyboard()
{
    m_keysyms.clear();
    m_modifiers = {};
    auto *server = m_connection.handle();
    if (xcb_connection_has_error(server))
        return;
    const auto *setup = xcb_get_setup(server);
    const auto count = std::uint8_t(setup->max_keycode - setup->min_keycode + 1);
    const X11Reply<xcb_get_keyboard_mapping_reply_t> mapping(xcb_get_keyboard_mapping_reply(
        server, xcb_get_keyboard_mapping(server, setup->min_keycode, count), nullptr));
    if (!mapping)
        return;
    const std::size_t levels = mapping->keysyms_per_keycode;
    const auto *keysyms = xcb_get_keyboard_mapping_keysyms(mapping.get());
    for (std::size_t key = 0; key < count; ++key, keysyms += levels)
        m_keysyms.emplace_back(xcb_keycode_t(setup->min_keycode + key),
                               std::vector<std::uint32_t>(keysyms, keysyms + levels));
    readModifiers([&](xcb_keycode_t code) -> std::uint32_t {
        return code < setup->min_keycode || levels == 0
                   ? XCB_NO_SYMBOL
                   : m_keysyms[std::size_t(code - setup->min_keycode)].second.front();
    });
}

void X11HotKeyGrabber::readModifiers(const std::function<std::uint32_t(xcb_keycode_t)> &keysymOf)
{
    auto *server = m_connection.handle();
    const X11Reply<xcb_get_modifier_mapping_reply_t> reply(
        xcb_get_modifier_mapping_reply(server, xcb_get_modifier_mapping(server), nullptr));
    m_modifiers.locks = {XCB_MOD_MASK_LOCK};
    if (!reply)
        return;
    const auto *codes = xcb_get_modifier_mapping_keycodes(reply.get());
    std::uint16_t options = 0;
    std::uint16_t commands = 0;
    for (int modifier = 3; modifier < 8; ++modifier) { // after Shift, Lock and Control
        const auto bit = std::uint16_t(1U << unsigned(modifier));
        for (int key = 0; key < reply->keycodes_per_modifier; ++key) {
            const auto code = codes[modifier * reply->keycodes_per_modifier + key];
            const std::uint32_t keysym = code == 0 ? XCB_NO_SYMBOL : keysymOf(code);
            if (keysym == XK_Num_Lock || keysym == XK_Scroll_Lock)
                m_modifiers.locks.insert(bit);
            else if (keysym == XK_Alt_L || keysym == XK_Alt_R)
                options |= bit;
            else if (keysym == XK_Super_L || keysym == XK_Super_R)
                commands |= bit;
        }
    }
    // A key that stands for several modifiers counts as the first of them.
    const auto lowest = [](std::uint16_t bits) { return std::uint16_t(bits & (~bits + 1U)); };
    if (options)
        m_modifiers.option = lowest(options);
    if (commands)
        m_modifiers.command = lowest(commands);
}

std::optional<X11HotKeyGrabber::Key> X11HotKeyGrabber::keyOf(const KeyCombo &combo) const
{
    const auto keysym = KeyNames::keysym(combo.keyCode);
    if (!keysym)
        return std::nullopt;
    std::uint16_t modifiers = 0;
    const std::array meanings{std::pair{KeyCombo::control, std::uint16_t(XCB_MOD_MASK_CONTROL)},
                              std::pair{KeyCombo::shift, std::uint16_t(XCB_MOD_MASK_SHIFT)},
                              std::pair{KeyCombo::option, m_modifiers.option},
                              std::pair{KeyCombo::command, m_modifiers.command}};
    for (const auto &[meaning, bit] : meanings)
        if (combo.modifiers.contains(meaning))
            modifiers |= bit;

    // The key that types it plainly, before one that does so on a further level or layout.
    std::size_t levels = 0;
    for (const auto &[code, keysyms] : m_keysyms)
        levels = std::max(levels, keysyms.size());
    for (std::size_t level = 0; level < levels; ++level)
        for (const auto &[code, keysyms] : m_keysyms)
            if (keysyms[level] == *keysym)
                return Key{code, modifiers};
    return std::nullopt;
}

std::vector<std::uint16_t> X11HotKeyGrabber::lockVariants() const
{
    std::vector<std::uint16_t> variants{0};
    for (const std::uint16_t lock : m_modifiers.locks)
        for (std::size_t index = 0, count = variants.size(); index < count; ++index)
            variants.push_back(variants[index] | lock);
    return variants;
}

} // namespace velmo
