#include "VelmoCore/HotKeys/KeyCombo.h"

#include <algorithm>
#include <array>

namespace velmo {
namespace {

/// F1 to F12.
constexpr std::array<std::uint32_t, 12> functionKeyCodes{122, 120, 99,  118, 96,  97,
                                                         98,  100, 101, 109, 103, 111};

} // namespace

bool KeyCombo::isAcceptableGlobalShortcut() const
{
    return modifiers.intersects(control | option | command) ||
           std::ranges::find(functionKeyCodes, keyCode) != functionKeyCodes.end();
}

void JsonCoding<KeyModifiers>::write(JsonWriter &writer, const KeyModifiers &modifiers)
{
    JsonCoding<std::uint32_t>::write(writer, modifiers.bits);
}

KeyModifiers JsonCoding<KeyModifiers>::read(const boost::json::value &json)
{
    return {JsonCoding<std::uint32_t>::read(json)};
}

} // namespace velmo
