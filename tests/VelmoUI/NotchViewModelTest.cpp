#include "VelmoUI/Notch/NotchViewModel.h"

#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoUI/Modules/Frame/ModuleRegistry.h"

#include "tests/VelmoUI/FakeModule.h"
#include "tests/VelmoUI/ServicesFixture.h"
#include "tests/support/Printers.h"

#include <gmock/gmock.h>

namespace velmo {
namespace {

using enum NotchPresentation;
using testing::ElementsAre;

class NotchViewModelTest : public ServicesFixture {
protected:
    NotchViewModelTest()
    {
        model.onTransition = [this](NotchPresentation, NotchPresentation to, NotchEvent) {
            transitions.push_back(to);
        };
    }

    FakeModule &add(const char *id)
    {
        return FakeModule::addTo(*services.modules, QString::fromLatin1(id));
    }
    QString selected() const
    {
        const auto *module = model.modules().current();
        return module ? module->id() : QString();
    }
    void showMessage()
    {
        services.activity->post(ActivityEvent::make(desktop.scheduler.now(), {}, u"Pronto"_qs,
                                                    FeedbackStyle::info, {}));
    }
    /// Lets the shape arrive; how high it got on its way.
    double watchShape()
    {
        double highest = model.shape().height();
        for (int time = 8; model.shape().state() == ShapeAnimator::Running && time < 4800;
             time += 8) {
            model.shape().setCurrentTime(time);
            highest = std::max(highest, model.shape().height());
        }
        EXPECT_EQ(model.shape().current(), model.shape().target());
        return highest;
    }

    NotchViewModel model{1, NotchGeometry::metrics(FakeDesktop::screen(1)), services.panels()};
    std::vector<NotchPresentation> transitions;
};

const std::vector<DroppedItem> twoItems = {{DroppedItem::Link{QUrl(u"https://orvane.app"_qs)}},
                                           {DroppedItem::Text{u"um texto"_qs}}};

TEST_F(NotchViewModelTest, ChangesNothingForAnEventWithoutEffect)
{
    desktop.scheduler.advance(1s);
    const Date before = model.presentationChangedAt();
    for (const NotchEvent event : {NotchEvent::hoverExited, NotchEvent::escape, NotchEvent::dismiss,
                                   NotchEvent::dragExited, NotchEvent::clickOutside})
        model.send(event);
    EXPECT_THAT(transitions, ElementsAre());
    EXPECT_EQ(model.presentationChangedAt(), before);

    model.send(NotchEvent::dragEntered);
    model.drop().setZone(DropZone::notch);
    model.send(NotchEvent::dragEntered);
    EXPECT_EQ(model.drop().zone(), DropZone::notch);
    EXPECT_THAT(transitions, ElementsAre(dropTarget));
    EXPECT_EQ(model.presentationChangedAt(), desktop.scheduler.now());
}

TEST_F(NotchViewModelTest, SelectsAmongTheVisibleModulesOnly)
{
    EXPECT_EQ(model.modules().current(), nullptr);
    model.modules().selectAdjacent(1);
    for (const char *id : {"a", "b", "c"})
        add(id);
    change([](AppSettings &next) { next.hiddenModules = {u"b"_qs}; });
    StringList seen;
    for (const int direction : {1, 1, -1}) {
        model.modules().selectAdjacent(direction);
        seen.push_back(selected());
    }
    EXPECT_THAT(seen, ElementsAre(u"c", u"a", u"c"));
    for (const int index : {-1, 2})
        model.modules().select(index);
    model.modules().select(u"b"_qs);
    EXPECT_EQ(selected(), u"c");
    model.modules().select(0);
    EXPECT_EQ(selected(), u"a");
    change([](AppSettings &next) { next.hiddenModules.push_back(u"a"_qs); });
    EXPECT_EQ(selected(), u"c");

    model.send(NotchEvent::openRequested);
    change([](AppSettings &next) { next.hiddenModules.push_back(u"c"_qs); });
    model.modules().select(u"b"_qs);
    EXPECT_EQ(model.modules().current(), nullptr);
}

TEST_F(NotchViewModelTest, ActivatesAModuleWhenItFirstShows)
{
    FakeModule &a = add("a");
    FakeModule &b = add("b");
    FakeModule &c = add("c");
    model.modules().select(b.id());
    EXPECT_EQ(b.activations, 0);
    model.send(NotchEvent::openRequested);
    model.modules().select(a.id());
    model.modules().select(b.id());
    EXPECT_EQ(std::pair(a.activations, b.activations), std::pair(1, 1));
    change([&](AppSettings &next) { next.hiddenModules = {a.id(), b.id()}; });
    EXPECT_EQ(c.activations, 1) << "the next one takes the place of a hidden one";
}

TEST_F(NotchViewModelTest, OpensWithASpringUnlessTheUserWantsLessMotion)
{
    const double open = 24 + 172;
    model.send(NotchEvent::openRequested);
    EXPECT_GT(watchShape(), open + 1);

    model.send(NotchEvent::escape);
    watchShape();
    desktop.appearance.isReduced = true;
    model.send(NotchEvent::openRequested);
    EXPECT_EQ(watchShape(), open);
    change([](AppSettings &next) { next.animationsEnabled = false; });
    model.send(NotchEvent::escape);
    EXPECT_EQ(model.shape().height(), 24) << "at once";
}

TEST_F(NotchViewModelTest, LetsAMessageComeWithoutASwingOnceThePanelIsAtRest)
{
    const double withMessage = 24 + 34;
    for (const auto &[rest, swings] : {std::pair(0.69s, true), std::pair(0.71s, false)}) {
        model.send(NotchEvent::openRequested);
        model.send(NotchEvent::escape);
        watchShape();
        desktop.scheduler.advance(rest);
        showMessage();
        EXPECT_EQ(watchShape() > withMessage + 0.1, swings) << rest.count();
        services.activity->dismissFeedback();
        watchShape();
    }
}

TEST_F(NotchViewModelTest, HoldsWhatWasDroppedUntilTheLastItemGoes)
{
    model.drop().receive(twoItems); // a drop that finishes after the surface closed
    EXPECT_EQ(model.presentation(), dropResult);
    model.drop().removeItem(u"text:?"_qs);
    model.drop().removeItem(twoItems[0].id());
    EXPECT_THAT(model.drop().items(), ElementsAre(twoItems[1]));
    EXPECT_EQ(model.presentation(), dropResult);
    model.drop().removeItem(twoItems[1].id());
    EXPECT_EQ(model.presentation(), collapsed);

    model.drop().receive(twoItems);
    model.drop().setZone(DropZone::airdrop);
    model.send(NotchEvent::dragEntered);
    EXPECT_THAT(model.drop().items(), ElementsAre());
    EXPECT_EQ(model.drop().zone(), DropZone::actions);
}

TEST_F(NotchViewModelTest, SwallowsADropletAtTheEndOfItsFlight)
{
    DropSurface &drop = model.drop();
    int gulps = 0;
    QObject::connect(&drop, &DropSurface::gulped, [&] { ++gulps; });
    drop.startDroplet({10, 20});
    EXPECT_FALSE(drop.droplet()) << "nothing was dropped";
    drop.receive(twoItems);
    drop.startDroplet({10, 20});
    desktop.scheduler.advance(0.44s);
    EXPECT_EQ(model.drop().droplet()->start, (Point{10, 20}));
    drop.startDroplet({30, 40}); // takes the place of the first
    desktop.scheduler.advance(0.44s);
    EXPECT_EQ(gulps, 0);
    desktop.scheduler.advance(0.01s);
    EXPECT_EQ(gulps, 1);
    EXPECT_FALSE(model.drop().droplet());

    change([](AppSettings &next) { next.animationsEnabled = false; });
    drop.startDroplet({10, 20});
    EXPECT_FALSE(model.drop().droplet());
}

} // namespace
} // namespace velmo
