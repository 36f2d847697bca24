#include "VelmoCore/HotKeys/KeyCombo.h"

#include "VelmoCore/HotKeys/KeyNames.h"

#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <set>

namespace velmo {
namespace {

TEST(KeyCombo, AcceptsOnlyShortcutsThatNobodyTypes)
{
    const std::pair<KeyCombo, bool> cases[] = {
        {{45, KeyCombo::control}, true},
        {{45, KeyCombo::option}, true},
        {{45, KeyCombo::command | KeyCombo::shift}, true},
        {{45, KeyCombo::shift}, false},
        {{45, {.bits = 1}}, false},      // an unknown modifier
        {{122, {}}, true},               // F1
        {{111, KeyCombo::shift}, true},  // F12
        {{105, KeyCombo::shift}, false}, // F13
    };
    for (const auto &[combo, isAcceptable] : cases)
        EXPECT_EQ(combo.isAcceptableGlobalShortcut(), isAcceptable)
            << testing::PrintToString(combo);
}

TEST(KeyCombo, ShowsModifiersInOneOrderAndThenTheKey)
{
    const KeyModifiers all =
        KeyCombo::command | KeyCombo::shift | KeyCombo::option | KeyCombo::control;
    EXPECT_EQ(KeyNames::display({49, all}), "Ctrl+Alt+Shift+Super+Espaço");
    EXPECT_EQ(KeyNames::display({36, KeyCombo::control}), "Ctrl+Enter");
    EXPECT_EQ(KeyNames::display({0xffff'ffff, KeyCombo::option}), "Alt+Tecla 4294967295");
}

TEST(KeyNames, GivesEveryKeyANameASymbolAndADigitOfItsOwn)
{
    std::set<QString> names;
    for (std::uint32_t code = 0; code < 256; ++code) {
        QString name = KeyNames::name(code);
        EXPECT_TRUE(names.insert(name).second) << name.toStdString();
        if (const auto symbol = KeyNames::keysym(code)) {
            EXPECT_EQ(KeyNames::keyCode(*symbol), code);
            if (*symbol > ' ' && *symbol < 0x7f) {
                EXPECT_EQ(name, QString(QChar(*symbol)).toUpper());
            }
        }
        name.remove("Num ");
        const bool isDigit = name.size() == 1 && name[0] >= u'1' && name[0] <= u'9';
        EXPECT_EQ(KeyNames::digitIndex(code).value_or(-1), isDigit ? name[0].digitValue() - 1 : -1);
    }
}

TEST(KeyNames, ReadsTheSymbolsThatOneKeySends)
{
    const std::pair<std::uint32_t, std::optional<std::uint32_t>> cases[] = {
        {'N', 45},    {0xff95, 89},     // the number pad's 7 without Num Lock
        {0xff9f, 65},                   // its comma without Num Lock
        {0xfe20, 48},                   // Tab with shift
        {0xff08, 51},                   // Backspace is the key that is called delete
        {0, {}},      {0x1008ff13, {}}, // louder
    };
    for (const auto &[keysym, keyCode] : cases)
        EXPECT_EQ(KeyNames::keyCode(keysym), keyCode) << keysym;
}

} // namespace
} // namespace velmo
