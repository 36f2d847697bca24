#include "VelmoUI/Modules/Home/HomePageModel.h"

#include "VelmoUI/Modules/BuiltInModules.h"
#include "VelmoUI/Modules/Home/FavoritesModel.h"
#include "VelmoUI/Modules/Home/HomeView.h"

#include "tests/VelmoUI/PanelFixture.h"
#include "tests/support/Printers.h"

#include <QQuickItem>

#include <X11/keysym.h>

namespace velmo {
namespace {

class HomePageModelTest : public PanelFixture {
protected:
    HomePageModelTest()
    {
        addBuiltInModules(services.modules);
        change([](AppSettings &settings) {
            settings.hasCompletedOnboarding = true;
            settings.hiddenHomeCards = {};
            settings.moduleOrder = {QStringLiteral("home")};
        });
    }

    QStringList shownCards() const
    {
        QStringList names;
        for (const HomeCard card : HomeView::cards(services))
            names.append(HomeCards::name(card));
        return names;
    }
    int width() const { return shape()[2].toInt(); }
};

} // namespace

TEST_F(HomePageModelTest, BringsALowBatteryToTheFront)
{
    const auto first = [&](int percent, bool isCharging) {
        desktop.power.set(BatteryInfo{.percent = percent, .isCharging = isCharging});
        return shownCards().front();
    };
    EXPECT_EQ(first(16, false), u"favorites");
    EXPECT_EQ(first(15, false), u"system");
    EXPECT_EQ(first(15, true), u"favorites");
    desktop.power.set(std::nullopt);
    EXPECT_EQ(shownCards().front(), u"favorites");
}

TEST_F(HomePageModelTest, MakesThePanelAsWideAsItsCards)
{
    start();
    change([](AppSettings &settings) { settings.hasCompletedOnboarding = false; });
    coordinator.open();
    const int withWelcome = width();
    change([](AppSettings &settings) { settings.hasCompletedOnboarding = true; });
    constexpr int wanted = 72 + (146 + 10) + (214 + 10) + 290 + 20;
    constexpr int leastForTheBar = 240 + 190 + 240;
    EXPECT_EQ(withWelcome - width(), wanted - leastForTheBar);
}

TEST_F(HomePageModelTest, TurnsItsPagesByKey)
{
    start();
    showView();
    coordinator.open();
    QCoreApplication::processEvents();
    auto *home = view().rootObject()->property("content").value<QObject *>();
    auto *page = home->property("page").value<HomePageModel *>();
    ASSERT_TRUE(page);
    EXPECT_EQ(page->pageCount(), 1);
    page->setWidth(200);
    ASSERT_EQ(page->pageCount(), 2);
    press(XK_Right, Qt::ControlModifier, Qt::Key_Right);
    press(XK_Right, Qt::ControlModifier, Qt::Key_Right);
    EXPECT_EQ(page->pageIndex(), 1);
    press(XK_Left, Qt::ControlModifier, Qt::Key_Left);
    EXPECT_EQ(page->pageIndex(), 0);
}

TEST_F(HomePageModelTest, StartsKeepsAndBringsBackFavorites)
{
    for (const char16_t *name : {u"alfa", u"beta", u"Álbum"}) {
        const QString text = QString::fromUtf16(name);
        desktop.applications.entries.push_back(
            {text + QStringLiteral(".desktop"), text, {}, QStringLiteral("fotos")});
    }
    start();
    coordinator.open();
    auto *home = view().rootObject()->property("content").value<QObject *>();
    auto *page = home->property("page").value<HomePageModel *>();
    auto &favorites = dynamic_cast<FavoritesModel &>(*page->card(QStringLiteral("favorites")));
    const auto names = [](QAbstractItemModel *model) {
        QStringList found;
        for (int row = 0; row < model->rowCount(); ++row)
            found.append(model->index(row, 0).data(Qt::UserRole + 1).toString());
        return found;
    };
    favorites.startPicking();
    favorites.search(QStringLiteral("AL"));
    EXPECT_EQ(names(favorites.found()), (QStringList{u"alfa"_qs, u"Álbum"_qs}));
    favorites.toggleFirst();
    favorites.search(QStringLiteral("Foto"));
    EXPECT_EQ(favorites.found()->rowCount(), 3);
    favorites.toggle(QStringLiteral("beta.desktop"));
    favorites.remove(QStringLiteral("alfa.desktop"));
    EXPECT_EQ(favorites.removedName(), u"alfa");
    favorites.undoRemove();
    EXPECT_EQ(names(favorites.favorites()), (QStringList{u"alfa"_qs, u"beta"_qs}));
    EXPECT_EQ(favorites.removedName(), QString());

    favorites.launch(QStringLiteral("beta.desktop"));
    EXPECT_EQ(desktop.applications.launched, std::vector{u"beta.desktop"_qs});
    EXPECT_EQ(shown(), u"collapsed");
    desktop.applications.entries.clear();
    favorites.launch(QStringLiteral("beta.desktop"));
    EXPECT_EQ(services.activity.feedback()->title, u"Não foi possível abrir");
}

} // namespace velmo
