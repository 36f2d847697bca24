#include "VelmoUI/Modules/Home/FavoriteApps.h"

#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoCore/Settings/SettingsStore.h"

#include "tests/VelmoUI/ServicesFixture.h"

namespace velmo {
namespace {

class FavoriteAppsTest : public ServicesFixture {
protected:
    FavoriteAppsTest()
    {
        for (char letter = 'a'; letter <= 'z'; ++letter)
            desktop.applications.entries.push_back({.id = QString(QLatin1Char(letter))});
    }

    void set(const QString &ids)
    {
        change([&](AppSettings &next) { next.favoriteApps = {ids.cbegin(), ids.cend()}; });
    }
    QString stored() const
    {
        QString ids;
        for (const QString &id : settings().favoriteApps)
            ids += id;
        return ids;
    }
    /// The title of what the user has been shown since the last time.
    QString takeFeedback()
    {
        const auto feedback = services.activity->feedback();
        services.activity->dismissFeedback();
        EXPECT_TRUE(services.activity->history().empty());
        EXPECT_EQ(feedback && feedback->style == FeedbackStyle::error,
                  feedback && feedback->title.startsWith("Só"));
        return feedback ? feedback->title : QString();
    }

    FavoriteApps apps{*services.settings, desktop.applications, *services.activity,
                      desktop.scheduler};
};

TEST_F(FavoriteAppsTest, AddsInstalledApplicationsUpToTheLimit)
{
    set("bX"); // X isn't installed
    apps.add({QUrl("file:///apps/a"), QUrl("file:///home/note.txt"), QUrl("file:///apps/b"),
              QUrl("file:///apps/a")});
    EXPECT_EQ(stored(), "bXa");
    EXPECT_EQ(takeFeedback(), "Só aplicativos instalados podem ser favoritos.");
    apps.add(StringList{"Y"});
    EXPECT_EQ(takeFeedback(), "Só aplicativos instalados podem ser favoritos.");

    set("Xabcdefghijk");
    apps.add(StringList{"a", "l", "b"});
    EXPECT_EQ(takeFeedback(), "");
    apps.add(StringList{"l"});
    EXPECT_EQ(takeFeedback(), "");
    apps.add({QUrl("file:///home/note.txt"), QUrl("file:///apps/m")});
    EXPECT_EQ(stored(), "Xabcdefghijkl");
    EXPECT_EQ(takeFeedback(), "Favoritos cheios");
}

TEST_F(FavoriteAppsTest, MovesAmongThoseThatShow)
{
    struct Case {
        const char *id;
        int index;
        const char *after;
    };
    for (const auto &[id, index, after] :
         {Case{"a", 1, "XbaYc"}, Case{"a", 9, "XbYca"}, Case{"c", -1, "XcabY"},
          Case{"c", 1, "XacbY"}, Case{"b", 1, "XabYc"}, Case{"X", 0, "XabYc"}}) {
        set("XabYc");
        apps.move(id, index);
        EXPECT_EQ(stored(), after) << id << index;
        EXPECT_EQ(apps.rows().size(), 3U);
    }
    apps.remove("b");
    EXPECT_EQ(stored(), "XaYc");
}

} // namespace
} // namespace velmo
