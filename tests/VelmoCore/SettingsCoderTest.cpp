#include "VelmoCore/Settings/SettingsCoder.h"

#include "tests/support/Printers.h"

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
    settings.displayMode = DisplayMode{DisplayMode::Specific{4'000'000'000, "DP-1"}};
    settings.toggleHotKey = {122, {}};
    settings.hiddenHomeCards = {};
    settings.radialRings = {RadialRingKind::music};
    settings.radialFavoritesName = "Ação \"😀\"";
    settings.pomodoro.autoAdvance = false;
    settings.shelfDropStorage = ShelfStorage::moved;
    settings.contextTools["code"] = {ContextTool::search, ContextTool::copyURL};
    settings.appContextOverrides["org.x"] = AppContextCategory::meeting;
    settings.clipboardMaxItems = -2'000'000'000;
    settings.hoverDelay = 1e300s;

    const DecodeResult result = SettingsCoder::decode(SettingsCoder::encode(settings));
    EXPECT_EQ(result.settings, settings);
    EXPECT_THAT(result.discardedKeys, IsEmpty());
    EXPECT_FALSE(result.wasUnreadable);
}

TEST(SettingsCoder, LosesOnlyTheKeysWithAWrongValue)
{
    const std::pair<const char *, std::vector<QString>> cases[] = {
        {R"("unknown":1,"openOnClick":1,"theme":null,"accent":"Blue")",
         {"accent", "openOnClick", "theme"}},
        {R"("moduleOrder":["home",2])", {"moduleOrder"}},
        {R"("toggleHotKey":{"keyCode":-1,"modifiers":256})", {"toggleHotKey"}},
        {R"("pomodoro":{"focusMinutes":5})", {"pomodoro"}},
        {R"("displayMode":{"all":{},"primary":{}})", {"displayMode"}},
        {R"("contextTools":{"code":["search","hammer"]})", {"contextTools"}},
        {R"("schemaVersion":"1","hoverBehavior":"none")", {"schemaVersion"}},
    };
    for (const auto &[entries, discarded] : cases) {
        const QByteArray text = QByteArray(R"({"closeDelay":1.5,"hiddenModules":["notes"],)") +
                                entries + R"(,"eventAlertMinutes":-3})";
        const DecodeResult result = SettingsCoder::decode(text);
        EXPECT_EQ(result.discardedKeys, discarded) << entries;
        EXPECT_EQ(result.settings.closeDelay, 1.5s);
        EXPECT_THAT(result.settings.hiddenModules, ElementsAre("notes"));
        EXPECT_EQ(result.settings.eventAlertMinutes, -3);
        EXPECT_EQ(result.settings.schemaVersion, 5);
    }
}

TEST(SettingsCoder, TellsTextThatHoldsNoSettings)
{
    const DecodeResult unreadable{.settings = {}, .discardedKeys = {}, .wasUnreadable = true};
    for (const QByteArray &text :
         {QByteArray(), QByteArray("[]"), QByteArray("{} x"), QByteArray(R"({"theme":"dark")")})
        EXPECT_EQ(SettingsCoder::decode(text), unreadable) << text.constData();
}

TEST(SettingsCoder, BringsOlderVersionsUpToDate)
{
    using enum AccentChoice;
    using enum HoverBehavior;
    const struct {
        QByteArray version;
        AccentChoice accent;
        std::size_t hiddenHomeCards;
        HoverBehavior hoverBehavior;
        bool showsAutomaticChanges;
    } cases[] = {
        {R"("schemaVersion":-7,)", silver, 4, expand, true},
        {R"("schemaVersion":1,)", silver, 4, expand, true},
        {R"("schemaVersion":2,)", yellow, 4, expand, true},
        {R"("schemaVersion":3,)", yellow, 0, expand, true},
        {R"("schemaVersion":4,)", yellow, 0, preview, true},
        {R"("schemaVersion":5,)", yellow, 0, preview, false},
        {R"("schemaVersion":9,)", yellow, 0, preview, false},
        {"", yellow, 0, preview, false},
    };
    for (const auto &test : cases) {
        for (const QByteArray damage : {"", R"(,"theme":7)"}) {
            const QByteArray text = "{" + test.version +
                                    R"("accent":"yellow","hiddenHomeCards":[],
                                       "hoverBehavior":"preview",
                                       "volumeHUDShowsAutomaticChanges":false)" +
                                    damage + "}";
            SCOPED_TRACE(text.constData());
            const AppSettings settings = SettingsCoder::decode(text).settings;
            EXPECT_EQ(settings.accent, test.accent);
            EXPECT_EQ(settings.hiddenHomeCards.size(), test.hiddenHomeCards);
            EXPECT_EQ(settings.hoverBehavior, test.hoverBehavior);
            EXPECT_EQ(settings.volumeHUDShowsAutomaticChanges, test.showsAutomaticChanges);
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
    EXPECT_THAT(settings.contextTools.at("finder"),
                ElementsAre(ContextTool::finderActions, ContextTool::shelf));
}

} // namespace
} // namespace velmo
