#include "VelmoCore/HotKeys/KeyCombo.h"

#include "VelmoCore/HotKeys/KeyNames.h"

#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <set>

namespace velmo {
namespace {

TEST(KeyCombo, AcceptsOnlyShortcutsThatNobodyTypes)
{
    struct Case {
        KeyCombo combo;
        bool isAcceptable;
    };
    for (const auto &[combo, isAcceptable] : std::initializer_list<Case>{
             {{45, KeyCombo::control}, true},
             {{45, KeyCombo::option}, true},
             {{45, KeyCombo::command | KeyCombo::shift}, true},
             {{45, KeyCombo::shift}, false},
             {{45, {}}, false},
             {{122, {}}, true},               // F1
             {{111, KeyCombo::shift}, true},  // F12
             {{105, KeyCombo::shift}, false}, // F13
             {{45, {.bits = 1}}, false},      // an unknown modifier
         })
        EXPECT_EQ(combo.isAcceptableGlobalShortcut(), isAcceptable)
            << testing::PrintToString(combo);
}

TEST(KeyCombo, ShowsModifiersInOneOrderAndThenTheKey)
{
    const KeyModifiers all =
        KeyCombo::command | KeyCombo::shift | KeyCombo::option | KeyCombo::control;
    EXPECT_EQ(KeyNames::display({49, all}), u"⌃⌥⇧⌘Espaço");
    EXPECT_EQ(KeyNames::display({36, KeyCombo::command}), u"⌘↩");
    EXPECT_EQ(KeyNames::display({0xffff'ffff, {}}), u"Tecla 4294967295");
}

TEST(KeyCombo, StandsInJsonAsTwoNumbers)
{
    const KeyCombo combo{45, KeyCombo::control | KeyCombo::option};
    const QByteArray text = R"({"keyCode":45,"modifiers":6144})";
    EXPECT_EQ(Json::encode(combo), text);
    EXPECT_EQ(Json::decode<KeyCombo>(text), combo);
    EXPECT_EQ(Json::decode<KeyCombo>(R"({"keyCode":4294967295,"modifiers":4294967295})"),
              (KeyCombo{0xffff'ffff, {.bits = 0xffff'ffff}}));
    for (const char *wrong :
         {R"({"keyCode":45})", R"({"keyCode":-1,"modifiers":0})", R"({"keyCode":1,"modifiers":-1})",
          R"({"keyCode":1,"modifiers":4294967296})", R"({"keyCode":1,"modifiers":"6144"})",
          R"({"keyCode":1,"modifiers":1.5})", R"({"keyCode":1,"modifiers":{"bits":1}})"})
        EXPECT_THROW(Json::decode<KeyCombo>(QByteArray(wrong)), JsonError) << wrong;
}

TEST(KeyNames, GivesEveryKeyANameAndASymbolOfItsOwn)
{
    std::set<QString> names;
    std::size_t count = 0;
    for (std::uint32_t code = 0; code < 256; ++code) {
        const auto symbol = KeyNames::keysym(code);
        if (!symbol)
            continue;
        ++count;
        names.insert(KeyNames::name(code));
        EXPECT_EQ(KeyNames::keyCode(*symbol), code);
        if (*symbol > ' ' && *symbol < 0x7f) {
            EXPECT_EQ(KeyNames::name(code), QString(QChar(*symbol)).toUpper());
        }
    }
    EXPECT_EQ(names.size(), count);
}

TEST(KeyNames, ReadsTheSymbolsThatOneKeySends)
{
    struct Case {
        std::uint32_t keysym;
        std::optional<std::uint32_t> keyCode;
    };
    for (const auto &[keysym, keyCode] : std::initializer_list<Case>{
             {'n', 45},
             {'N', 45},
             {0xff95, 89}, // the number pad's 7 without Num Lock
             {0xff9f, 65}, // its comma without Num Lock
             {0xfe20, 48}, // Tab with shift
             {0xff08, 51}, // Backspace is the key that is called delete
             {0xffff, 117},
             {0, {}},
             {0x1008ff13, {}}, // louder
         })
        EXPECT_EQ(KeyNames::keyCode(keysym), keyCode) << keysym;
}

TEST(KeyNames, CountsTheDigitKeysByWhatTheyShow)
{
    for (std::uint32_t code = 0; code < 128; ++code) {
        QString name = KeyNames::name(code);
        name.remove(QStringLiteral("Num "));
        const bool isDigit = name.size() == 1 && name[0] >= u'1' && name[0] <= u'9';
        EXPECT_EQ(KeyNames::digitIndex(code),
                  isDigit ? std::optional(name[0].digitValue() - 1) : std::nullopt)
            << code;
    }
}

} // namespace
} // namespace velmo
