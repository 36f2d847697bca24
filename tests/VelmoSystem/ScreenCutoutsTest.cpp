#include "VelmoSystem/Linux/ScreenCutouts.h"

#include <gtest/gtest.h>

namespace velmo {
namespace {

constexpr QSize anySize(1920, 1080);

TEST(ScreenCutouts, ReadsTheOverride)
{
    const ScreenCutouts cutouts(
        QStringLiteral("eDP-1:32,663,663;;bad; :1,2,3;x:1,2;x:1,2,three;x:1,-2,3;x:1,2,inf;"
                       "a:b: 20.5 ,1,2"),
        {});
    EXPECT_EQ(cutouts.find(u"eDP-1"_qs, false, anySize, 1), (ScreenCutout{32, 663, 663}));
    EXPECT_EQ(cutouts.find(u"a:b"_qs, false, anySize, 2), (ScreenCutout{20.5, 1, 2}));
    for (const char *name : {"", "x", "bad", "HDMI-1"})
        EXPECT_FALSE(cutouts.find(QString::fromLatin1(name), true, anySize, 1)) << name;
}

TEST(ScreenCutouts, KnowsADeviceByItsModelAndItsWholePanel)
{
    const QString panel = u"DSI-1"_qs;
    const ScreenCutouts cutouts({}, u"OnePlus 6"_qs);
    EXPECT_EQ(cutouts.find(panel, true, QSize(1080, 2280), 2), (ScreenCutout{40, 178.5, 178.5}));
    EXPECT_FALSE(cutouts.find(panel, false, QSize(1080, 2280), 2)) << "an external screen";
    EXPECT_FALSE(cutouts.find(panel, true, QSize(2280, 1080), 2)) << "turned to the side";
    const ScreenCutouts overridden(u"DSI-1:1,2,3"_qs, u"OnePlus 6"_qs);
    EXPECT_EQ(overridden.find(panel, true, QSize(1080, 2280), 2), (ScreenCutout{1, 2, 3}));
}

} // namespace
} // namespace velmo
