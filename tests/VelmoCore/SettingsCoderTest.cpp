#include "VelmoCore/Settings/SettingsCoder.h"

#include "tests/support/Printers.h"

#include <boost/json/object.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmo {
namespace {

using SettingsCoder::DecodeResult;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(SettingsCoder, KeepsEveryKindOfValueThroughAFile)
{
    AppSettings settings;
    settings.hoverBehavior = HoverBehavior::preview;
    settings.closeDelay = 0.75s;
    settings.displayMode =
        DisplayMode{DisplayMode::Specific{4'000'000'000, QStringLiteral("DP-1")}};
    settings.toggleHotKey = {122, {}};
    settings.hiddenHomeCards = {};
    settings.radialRings = {RadialRingKind::music};
    settings.radialFavoritesName = QStringLiteral("Ação \"😀\"");
    settings.pomodoro.autoAdvance = false;
    settings.shelfDropStorage = ShelfStorage::moved;
    settings.contextTools[QStringLiteral("code")] = {ContextTool::search, ContextTool::copyURL};
    settings.appContextOverrides[QStringLiteral("org.x")] = AppContextCategory::meeting;
    settings.clipboardMaxItems = -2'000'000'000;
    settings.hoverDelay = 1e300s;

    const DecodeResult result = SettingsCoder::decode(SettingsCoder::encode(settings));
    EXPECT_EQ(result.settings, settings);
    EXPECT_THAT(result.discardedKeys, IsEmpty());
    EXPECT_FALSE(result.wasUnreadable);
}

TEST(SettingsCoder, WritesAllKeysSorted)
{
    const auto record = Json::parse(SettingsCoder::encode(AppSettings())).as_object();
    std::vector<std::string> keys;
    for (const auto &entry : record)
        keys.emplace_back(entry.key());
    EXPECT_EQ(keys.size(), 77U);
    EXPECT_TRUE(std::ranges::is_sorted(keys));
}

TEST(SettingsCoder, TakesDefaultsForKeysThatAFileLacks)
{
    EXPECT_EQ(SettingsCoder::decode("{}"), DecodeResult());
    EXPECT_EQ(SettingsCoder::decode(R"({"soundPack":[1,{}]})"), DecodeResult());
}

TEST(SettingsCoder, LosesOnlyTheKeysWithAWrongValue)
{
    struct Case {
        const char *entries;
        std::vector<QString> discarded;
    };
    for (const auto &[entries, discarded] : std::initializer_list<Case>{
             {R"("panelSize":"huge")", {u"panelSize"_qs}},
             {R"("unknown":1,"openOnClick":1,"theme":null,"accent":"Blue")",
              {u"accent"_qs, u"openOnClick"_qs, u"theme"_qs}},
             {R"("moduleOrder":["home",2])", {u"moduleOrder"_qs}},
             {R"("toggleHotKey":{"keyCode":-1,"modifiers":256})", {u"toggleHotKey"_qs}},
             {R"("pomodoro":{"focusMinutes":5})", {u"pomodoro"_qs}},
             {R"("displayMode":{"all":{},"primary":{}})", {u"displayMode"_qs}},
             {R"("contextTools":{"code":["search","hammer"]})", {u"contextTools"_qs}},
             {R"("appContextOverrides":{"a":"games"})", {u"appContextOverrides"_qs}},
             {R"("schemaVersion":"1","hoverBehavior":"none")", {u"schemaVersion"_qs}},
         }) {
        const QByteArray text = QByteArray(R"({"closeDelay":1.5,"hiddenModules":["notes"],)") +
                                entries + R"(,"eventAlertMinutes":-3})";
        const DecodeResult result = SettingsCoder::decode(text);
        EXPECT_EQ(result.discardedKeys, discarded) << entries;
        EXPECT_FALSE(result.wasUnreadable);
        EXPECT_EQ(result.settings.closeDelay, 1.5s);
        EXPECT_THAT(result.settings.hiddenModules, ElementsAre(u"notes"_qs));
        EXPECT_EQ(result.settings.eventAlertMinutes, -3);
        EXPECT_EQ(result.settings.schemaVersion, 5);
        EXPECT_EQ(result.settings.panelSize, PanelSize::regular);
    }
}

TEST(SettingsCoder, TellsTextThatHoldsNoSettings)
{
    const DecodeResult unreadable{.settings = {}, .discardedKeys = {}, .wasUnreadable = true};
    for (const QByteArray &text :
         {QByteArray(), QByteArray("[]"), QByteArray("null"), QByteArray("{} x"),
          QByteArray(R"({"theme":"dark")"), QByteArray("{\"theme\":\"\xff\"}"),
          QByteArray("{\"a\":").append(QByteArray(100'000, '['))})
        EXPECT_EQ(SettingsCoder::decode(text), unreadable) << text.left(40).constData();
}

TEST(SettingsCoder, BringsOlderVersionsUpToDate)
{
    struct Outcome {
        AccentChoice accent;
        std::size_t hiddenHomeCards;
        HoverBehavior hoverBehavior;
        bool showsAutomaticChanges;
        bool operator==(const Outcome &) const = default;
    };
    using enum AccentChoice;
    using enum HoverBehavior;
    struct Case {
        QByteArray version;
        Outcome outcome;
    };
    for (const auto &[version, outcome] : std::initializer_list<Case>{
             {R"("schemaVersion":-7,)", {silver, 4, expand, true}},
             {R"("schemaVersion":0,)", {silver, 4, expand, true}},
             {R"("schemaVersion":1,)", {silver, 4, expand, true}},
             {R"("schemaVersion":2,)", {yellow, 4, expand, true}},
             {R"("schemaVersion":3,)", {yellow, 0, expand, true}},
             {R"("schemaVersion":4,)", {yellow, 0, preview, true}},
             {R"("schemaVersion":5,)", {yellow, 0, preview, false}},
             {R"("schemaVersion":9,)", {yellow, 0, preview, false}},
             {"", {yellow, 0, preview, false}},
         }) {
        for (const QByteArray damage : {"", R"(,"theme":7)"}) {
            const AppSettings settings =
                SettingsCoder::decode("{" + version +
                                      R"("accent":"yellow","hiddenHomeCards":[],
                                         "hoverBehavior":"preview",
                                         "volumeHUDShowsAutomaticChanges":false)" +
                                      damage + "}")
                    .settings;
            EXPECT_EQ(outcome,
                      (Outcome{settings.accent, settings.hiddenHomeCards.size(),
                               settings.hoverBehavior, settings.volumeHUDShowsAutomaticChanges}))
                << version.constData() << damage.constData();
            EXPECT_EQ(settings.schemaVersion, 5);
        }
    }
    EXPECT_EQ(SettingsCoder::decode(R"({"schemaVersion":1,"accent":"pink"})").settings.accent,
              pink);
}

TEST(SettingsCoder, ReadsTheOldWordForTheFileTools)
{
    const AppSettings settings =
        SettingsCoder::decode(R"({"contextTools":{"finder":["recipes","shelf"]}})").settings;
    EXPECT_THAT(settings.contextTools.at(u"finder"_qs),
                ElementsAre(ContextTool::finderActions, ContextTool::shelf));
    EXPECT_EQ(Json::encode(settings.contextTools), R"({"finder":["finderActions","shelf"]})");
    try {
        Json::decode<ContextTool>(QByteArray(R"("martelo")"));
        ADD_FAILURE();
    } catch (const JsonError &error) {
        EXPECT_EQ(error.description(), u"Ferramenta desconhecida: martelo");
    }
}

} // namespace
} // namespace velmo
