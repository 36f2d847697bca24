#pragma once

#include "VelmoCore/HotKeys/KeyCombo.h"

#include <optional>

/// Virtual key codes, their names for display and their key symbols (X11 keysyms, as also Qt's
/// native ones).
namespace velmo::KeyNames {

inline constexpr std::uint32_t keyQ = 12;
inline constexpr std::uint32_t keyW = 13;
inline constexpr std::uint32_t keyComma = 43;
inline constexpr std::uint32_t keyTab = 48;
inline constexpr std::uint32_t keyEscape = 53;
inline constexpr std::uint32_t keyLeft = 123;
inline constexpr std::uint32_t keyRight = 124;

/// What the user calls the modifiers.
inline constexpr char16_t control[] = u"Ctrl";
inline constexpr char16_t option[] = u"Alt";
inline constexpr char16_t shift[] = u"Shift";
inline constexpr char16_t command[] = u"Super";

/// The key's name, as "N", "F5", "Espaço" or "←"; "Tecla {code}" for an unknown code.
QString name(std::uint32_t keyCode);

/// The modifiers in one order and the key, as "Ctrl+Alt+Shift+Super+N": every text shows keys so.
QString display(const KeyCombo &combo);

/// The X11 keysym of a key code, nothing for an unknown code.
std::optional<std::uint32_t> keysym(std::uint32_t keyCode);

/// The key code of an X11 keysym (either case of a letter, also those of the number pad).
std::optional<std::uint32_t> keyCode(std::uint32_t keysym);

/// The key code of the key at that place of the keyboard, whatever the layout has put there: X11's
/// number of it, which is the kernel's and 8. Only of the places where layouts differ.
std::optional<std::uint32_t> keyCodeAt(std::uint32_t scanCode);

/// The index 0 to 8 of the digit keys 1 to 9, also those of the number pad.
std::optional<int> digitIndex(std::uint32_t keyCode);

} // namespace velmo::KeyNames
