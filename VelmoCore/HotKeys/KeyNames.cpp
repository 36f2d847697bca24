#include "VelmoCore/HotKeys/KeyNames.h"

#include <algorithm>
#include <array>
#include <utility>

namespace velmo::KeyNames {
namespace {

struct Key {
    std::uint32_t code;
    const char16_t *name;
    std::uint32_t keysym;
};

constexpr std::array keys{
    // Letters
    Key{0, u"A", 'a'},
    Key{11, u"B", 'b'},
    Key{8, u"C", 'c'},
    Key{2, u"D", 'd'},
    Key{14, u"E", 'e'},
    Key{3, u"F", 'f'},
    Key{5, u"G", 'g'},
    Key{4, u"H", 'h'},
    Key{34, u"I", 'i'},
    Key{38, u"J", 'j'},
    Key{40, u"K", 'k'},
    Key{37, u"L", 'l'},
    Key{46, u"M", 'm'},
    Key{45, u"N", 'n'},
    Key{31, u"O", 'o'},
    Key{35, u"P", 'p'},
    Key{12, u"Q", 'q'},
    Key{15, u"R", 'r'},
    Key{1, u"S", 's'},
    Key{17, u"T", 't'},
    Key{32, u"U", 'u'},
    Key{9, u"V", 'v'},
    Key{keyW, u"W", 'w'},
    Key{7, u"X", 'x'},
    Key{16, u"Y", 'y'},
    Key{6, u"Z", 'z'},
    // Digits and punctuation
    Key{29, u"0", '0'},
    Key{18, u"1", '1'},
    Key{19, u"2", '2'},
    Key{20, u"3", '3'},
    Key{21, u"4", '4'},
    Key{23, u"5", '5'},
    Key{22, u"6", '6'},
    Key{26, u"7", '7'},
    Key{28, u"8", '8'},
    Key{25, u"9", '9'},
    Key{27, u"-", '-'},
    Key{24, u"=", '='},
    Key{33, u"[", '['},
    Key{30, u"]", ']'},
    Key{42, u"\\", '\\'},
    Key{41, u";", ';'},
    Key{39, u"'", '\''},
    Key{50, u"`", '`'},
    Key{keyComma, u",", ','},
    Key{47, u".", '.'},
    Key{44, u"/", '/'},
    // Editing and movement
    Key{49, u"Espaço", ' '},
    Key{36, u"Enter", 0xff0d},
    Key{keyTab, u"Tab", 0xff09},
    Key{51, u"Backspace", 0xff08},
    Key{117, u"Delete", 0xffff},
    Key{keyEscape, u"Esc", 0xff1b},
    Key{114, u"Insert", 0xff63},
    Key{110, u"Menu", 0xff67},
    Key{keyLeft, u"←", 0xff51},
    Key{keyRight, u"→", 0xff53},
    Key{126, u"↑", 0xff52},
    Key{125, u"↓", 0xff54},
    Key{115, u"Home", 0xff50},
    Key{119, u"End", 0xff57},
    Key{116, u"Page Up", 0xff55},
    Key{121, u"Page Down", 0xff56},
    // Function keys
    Key{122, u"F1", 0xffbe},
    Key{120, u"F2", 0xffbf},
    Key{99, u"F3", 0xffc0},
    Key{118, u"F4", 0xffc1},
    Key{96, u"F5", 0xffc2},
    Key{97, u"F6", 0xffc3},
    Key{98, u"F7", 0xffc4},
    Key{100, u"F8", 0xffc5},
    Key{101, u"F9", 0xffc6},
    Key{109, u"F10", 0xffc7},
    Key{103, u"F11", 0xffc8},
    Key{111, u"F12", 0xffc9},
    Key{105, u"F13", 0xffca},
    Key{107, u"F14", 0xffcb},
    Key{113, u"F15", 0xffcc},
    Key{106, u"F16", 0xffcd},
    Key{64, u"F17", 0xffce},
    Key{79, u"F18", 0xffcf},
    Key{80, u"F19", 0xffd0},
    Key{90, u"F20", 0xffd1},
    // Number pad
    Key{82, u"Num 0", 0xffb0},
    Key{83, u"Num 1", 0xffb1},
    Key{84, u"Num 2", 0xffb2},
    Key{85, u"Num 3", 0xffb3},
    Key{86, u"Num 4", 0xffb4},
    Key{87, u"Num 5", 0xffb5},
    Key{88, u"Num 6", 0xffb6},
    Key{89, u"Num 7", 0xffb7},
    Key{91, u"Num 8", 0xffb8},
    Key{92, u"Num 9", 0xffb9},
    Key{65, u"Num .", 0xffae},
    Key{67, u"Num *", 0xffaa},
    Key{69, u"Num +", 0xffab},
    Key{75, u"Num /", 0xffaf},
    Key{78, u"Num -", 0xffad},
    Key{81, u"Num =", 0xffbd},
    Key{71, u"Clear", 0xff0b},
    Key{76, u"Num Enter", 0xff8d},
};

struct Alias {
    std::uint32_t keysym;
    std::uint32_t code;
};

/// What a key also sends: Tab with shift, and the number pad without Num Lock.
constexpr std::array aliases{
    Alias{0xfe20, keyTab}, Alias{0xff9e, 82}, Alias{0xff9c, 83}, Alias{0xff99, 84},
    Alias{0xff9b, 85},     Alias{0xff96, 86}, Alias{0xff9d, 87}, Alias{0xff98, 88},
    Alias{0xff95, 89},     Alias{0xff97, 91}, Alias{0xff9a, 92}, Alias{0xff9f, 65},
    Alias{0xffac, 65},
};

/// The key codes from the place of Esc to that of the slash, negative at modifiers.
constexpr std::size_t firstPlace = 9;
constexpr std::array places{
    53, 18, 19, 20, 21, 23, 22, 26, 28, 25, 29, 27, 24, 51, // Esc, digits
    48, 12, 13, 14, 15, 17, 16, 32, 34, 31, 35, 33, 30, 36, // Tab, QWERTY
    -1, 0,  1,  2,  3,  5,  4,  38, 40, 37, 41, 39, 50,     // Ctrl, ASDF
    -1, 42, 6,  7,  8,  9,  11, 45, 46, 43, 47, 44,         // Shift, ZXCV
};

constexpr const Key *find(std::uint32_t code)
{
    const auto found = std::ranges::find(keys, code, &Key::code);
    return found == keys.end() ? nullptr : &*found;
}

} // namespace

QString name(std::uint32_t keyCode)
{
    if (const Key *key = find(keyCode))
        return QString::fromUtf16(key->name);
    return QStringLiteral("Tecla %1").arg(keyCode);
}

QString display(const KeyCombo &combo)
{
    QString text;
    for (const auto &[modifier, title] :
         {std::pair{KeyCombo::control, control}, std::pair{KeyCombo::option, option},
          std::pair{KeyCombo::shift, shift}, std::pair{KeyCombo::command, command}}) {
        if (combo.modifiers.contains(modifier))
            text += QString::fromUtf16(title) + u'+';
    }
    return text + name(combo.keyCode);
}

std::optional<std::uint32_t> keysym(std::uint32_t keyCode)
{
    if (const Key *key = find(keyCode))
        return key->keysym;
    return {};
}

std::optional<std::uint32_t> keyCode(std::uint32_t keysym)
{
    if (keysym >= 'A' && keysym <= 'Z')
        keysym += 'a' - 'A';
    if (const auto key = std::ranges::find(keys, keysym, &Key::keysym); key != keys.end())
        return key->code;
    if (const auto alias = std::ranges::find(aliases, keysym, &Alias::keysym);
        alias != aliases.end())
        return alias->code;
    return {};
}

std::optional<std::uint32_t> keyCodeAt(std::uint32_t scanCode)
{
    const std::size_t place = scanCode - firstPlace; // far out where it's before
    if (place >= places.size() || places[place] < 0)
        return {};
    return std::uint32_t(places[place]);
}

std::optional<int> digitIndex(std::uint32_t keyCode)
{
    const std::uint32_t symbol = keysym(keyCode).value_or(0);
    if (symbol >= '1' && symbol <= '9')
        return static_cast<int>(symbol - '1');
    constexpr std::uint32_t padOne = 0xffb1;
    if (symbol >= padOne && symbol < padOne + 9)
        return static_cast<int>(symbol - padOne);
    return {};
}

} // namespace velmo::KeyNames
