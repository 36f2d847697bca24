#pragma once

#include "VelmoCore/Foundation/Json.h"

#include <boost/describe.hpp>

#include <compare>
#include <cstdint>

namespace velmo {

/// A set of modifier keys, as bits.
struct KeyModifiers {
    std::uint32_t bits = 0;

    constexpr bool contains(KeyModifiers other) const { return (bits & other.bits) == other.bits; }
    constexpr bool intersects(KeyModifiers other) const { return (bits & other.bits) != 0; }
    constexpr KeyModifiers operator|(KeyModifiers other) const { return {bits | other.bits}; }
    auto operator<=>(const KeyModifiers &) const = default;
};

/// A key and its modifiers, as a shortcut is stored. Key codes are a fixed virtual code a key,
/// whatever the layout (45 is N); `KeyNames` has their names.
struct KeyCombo {
    using Modifiers = KeyModifiers;

    static constexpr Modifiers command{256};
    static constexpr Modifiers shift{512};
    static constexpr Modifiers option{2048};
    static constexpr Modifiers control{4096};

    std::uint32_t keyCode = 0;
    Modifiers modifiers;

    /// `control`, `option` or `command` is held, or the key is one of F1 to F12.
    bool isAcceptableGlobalShortcut() const;

    auto operator<=>(const KeyCombo &) const = default;
};
BOOST_DESCRIBE_STRUCT(KeyCombo, (), (keyCode, modifiers))

/// Modifiers stand in JSON as their number.
template <>
struct JsonCoding<KeyModifiers> {
    static void write(JsonWriter &writer, const KeyModifiers &modifiers);
    static KeyModifiers read(const boost::json::value &json);
};

} // namespace velmo
