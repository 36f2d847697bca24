#include "VelmoCore/Notch/DisplaySelection.h"

#include "tests/support/Printers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmo {
namespace {

using testing::ElementsAre;

ScreenDescriptor plain(DisplayID id)
{
    return {.displayID = id, .frame = {0, 0, 1920, 1080}, .visibleFrame = {0, 0, 1920, 1050}};
}
ScreenDescriptor notched(DisplayID id)
{
    ScreenDescriptor screen = plain(id);
    screen.safeAreaTop = 32;
    screen.auxiliaryTopLeftWidth = screen.auxiliaryTopRightWidth = 860;
    return screen;
}
ScreenDescriptor builtIn(ScreenDescriptor screen)
{
    screen.isBuiltIn = true;
    return screen;
}
ScreenDescriptor primary(ScreenDescriptor screen)
{
    screen.isPrimary = true;
    return screen;
}

std::vector<DisplayID> targets(const DisplayMode &mode,
                               const std::vector<ScreenDescriptor> &screens)
{
    return DisplaySelection::targets(mode, screens);
}

TEST(DisplaySelection, PrefersTheBuiltInScreenWithACutout)
{
    const DisplayMode automatic;
    EXPECT_THAT(targets(automatic, {primary(plain(1)), notched(2), builtIn(notched(3))}),
                ElementsAre(3));
    EXPECT_THAT(targets(automatic, {primary(plain(1)), builtIn(plain(2)), notched(3), notched(4)}),
                ElementsAre(3));
    EXPECT_THAT(targets(automatic, {builtIn(plain(1)), primary(plain(2))}), ElementsAre(2));
    EXPECT_THAT(targets(automatic, {plain(7), plain(8)}), ElementsAre(7));
}

TEST(DisplaySelection, FollowsTheChosenMode)
{
    const std::vector screens = {plain(3), builtIn(notched(1)), primary(plain(2))};
    EXPECT_THAT(targets({DisplayMode::All{}}, screens), ElementsAre(3, 1, 2));
    EXPECT_THAT(targets({DisplayMode::Primary{}}, screens), ElementsAre(2));
    EXPECT_THAT(targets({DisplayMode::Specific{3, {}}}, screens), ElementsAre(3));
    EXPECT_THAT(targets({DisplayMode::Specific{9, u"Gone"_qs}}, screens), ElementsAre(1))
        << "as automatic while the screen is away";
}

TEST(DisplaySelection, HasNoTargetsWithoutScreens)
{
    for (const DisplayMode &mode :
         {DisplayMode{}, DisplayMode{DisplayMode::Primary{}}, DisplayMode{DisplayMode::All{}},
          DisplayMode{DisplayMode::Specific{1, {}}}})
        EXPECT_TRUE(targets(mode, {}).empty());
}

TEST(DisplaySelection, KeepsTheModeInJson)
{
    const std::pair<DisplayMode, QByteArray> cases[] = {
        {{}, R"({"automatic":{}})"},
        {{DisplayMode::Primary{}}, R"({"primary":{}})"},
        {{DisplayMode::All{}}, R"({"all":{}})"},
        {{DisplayMode::Specific{4'294'967'295, u"Tela à esquerda"_qs}},
         R"({"specific":{"displayID":4294967295,"name":"Tela à esquerda"}})"},
    };
    for (const auto &[mode, text] : cases) {
        EXPECT_EQ(Json::encode(mode), text);
        EXPECT_TRUE(Json::decode<DisplayMode>(text) == mode) << text.toStdString();
    }
    for (const QByteArray text : {R"({"specific":{"name":"Tela"}})", R"({"nearest":{}})", R"({})"})
        EXPECT_THROW(Json::decode<DisplayMode>(text), JsonError) << text.toStdString();
}

} // namespace
} // namespace velmo
