#include "VelmoCore/HotKeys/KeyNames.h"
#include "VelmoUI/App/ServiceWiring.h"
#include "VelmoUI/Modules/BuiltInModules.h"
#include "VelmoUI/Modules/Home/FavoriteApps.h"
#include "VelmoUI/Modules/Home/HomeView.h"
#include "VelmoUI/Settings/SettingsWindowController.h"

#include "tests/VelmoUI/PanelFixture.h"
#include "tests/support/Printers.h"

#include <QDirIterator>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QRegularExpression>
#include <QtTest/QTest>

#include <boost/mp11.hpp>

namespace velmo {
namespace {

/// A whole Orvane on a desktop of fakes, of which something can be seen.
class Orvane : public PanelFixture {
public:
    Orvane()
    {
        addBuiltInModules(services.modules);
        for (const HotKeyAction action :
             {HotKeyAction::toggle, HotKeyAction::newNote, HotKeyAction::clipboard})
            services.hotKeys.handlers[action] = [] {};
        desktop.power.info = BatteryInfo{.percent = 5};
        desktop.applications.entries = {{QStringLiteral("a.desktop"), QStringLiteral("A"), {}, {}}};
        ServiceWiring::start(services);
        change([](AppSettings &settings) { settings.displayMode = {DisplayMode::All{}}; });
        desktop.displays.descriptors = {FakeDesktop::screen(1), FakeDesktop::screen(2)};
        coordinator.start();
        services.hotKeys.apply();
    }
    void TestBody() override {}
    using PanelFixture::change;
    using PanelFixture::display;
    using PanelFixture::services;
    using PanelFixture::shape;

    QString after(Seconds time)
    {
        wait(time);
        return shown();
    }
    QString afterTap()
    {
        showView();
        QTest::mouseClick(&view(), Qt::LeftButton, {}, {view().width() / 2, 4});
        return shown();
    }
    QString afterClickOutside()
    {
        coordinator.open();
        desktop.pointer.press(outside);
        return shown();
    }
    QString afterHover(Seconds time)
    {
        desktop.movePointer(notchOf(1));
        return after(time);
    }
    QString afterLeaving(Seconds time)
    {
        coordinator.open();
        desktop.movePointer(notchOf(1));
        desktop.movePointer(outside);
        return after(time);
    }
    QString grabbed() const
    {
        QStringList keys;
        for (const auto &[id, combo] : desktop.hotKeyGrabber.grabbed)
            keys.append(KeyNames::display(combo));
        return keys.join(u' ');
    }
    QString modules() const
    {
        QStringList ids;
        for (const auto *module : services.modules.visible(services.settings.settings()))
            ids.append(module->id());
        return ids.join(u' ');
    }
    QString cards() const
    {
        QStringList names;
        for (const HomeCard card : HomeView::cards(services))
            names.append(HomeCards::name(card));
        return names.join(u' ');
    }
    QString open(int extent)
    {
        coordinator.open(QStringLiteral("home"));
        return QString::number(shape()[extent].toInt());
    }
    QString inFullScreen()
    {
        desktop.workspace.show({{7, FakeDesktop::screen(1).frame, true}});
        wait(0.35s);
        return isVisible(1) ? QStringLiteral("visible") : QStringLiteral("hidden");
    }
    QString rest()
    {
        auto *content = view().rootObject()->property("content").value<NotchContent *>();
        return content->shape()->isShapeVisible() ? QStringLiteral("visible")
                                                  : QStringLiteral("hidden");
    }
    QString windowColor()
    {
        SettingsWindowController controller(services);
        controller.show(SettingsPane::general);
        for (QWindow *window : QGuiApplication::topLevelWindows()) {
            auto *settings = qobject_cast<QQuickView *>(window);
            if (settings && settings->title() == u"Ajustes do Orvane")
                return settings->rootObject()->property("color").toString();
        }
        return {};
    }
    QString eventsOfTwoDays()
    {
        const Date now = desktop.scheduler.now();
        services.activity.post(ActivityEvent::make(now - 48h, {}, QStringLiteral("Antes"),
                                                   FeedbackStyle::info, QStringLiteral("test")));
        return QString::number(services.activity.history().size());
    }
    QString soundsAfterATimer()
    {
        services.timers.startTimer(5s);
        wait(5s);
        return QString::number(desktop.sounds.played.size());
    }
    QString copiesFromAPasswordManager()
    {
        desktop.frontApplication.info = {QStringLiteral("KeePassXC"),
                                         QStringLiteral("com.keepassxc.keepassxc")};
        return copies();
    }
    QString copies()
    {
        desktop.pasteboard.offer({{Pasteboard::textType.toString(), "a"}});
        wait(ClipboardMonitor::beat);
        return QString::number(services.clipboard.items().size());
    }
    QString copiesAfterTwoDays()
    {
        for (const QString &text : {QStringLiteral("a"), QStringLiteral("b")})
            services.clipboard.add(ClipItems::fromText(text, {}, desktop.scheduler.now()).value());
        wait(48h);
        services.clipboard.add(
            ClipItems::fromText(QStringLiteral("c"), {}, desktop.scheduler.now()).value());
        return QString::number(services.clipboard.items().size());
    }
    QString shelfAfterTwoDays()
    {
        services.shelf.addText(QStringLiteral("texto"));
        wait(48h);
        return QString::number(services.shelf.items().size());
    }
    /// What shows, how much is on the shelf, and whether the file is where it was.
    QString afterDrop()
    {
        const QString file = desktop.folder.path(QStringLiteral("a.txt"));
        desktop.folder.write(QStringLiteral("a.txt"), "a");
        coordinator.openFiles({QUrl::fromLocalFile(file)});
        return QStringLiteral("%1 %2 %3")
            .arg(shown())
            .arg(services.shelf.items().size())
            .arg(QFile::exists(file));
    }
    QString theme(const char *property)
    {
        QQmlComponent probe(qmlEngine(view().rootObject()));
        probe.setData("import QtQuick; import Velmo; QtObject { property string seen: Theme." +
                          QByteArray(property) + " }",
                      {});
        const std::unique_ptr<QObject> made(probe.create());
        return made->property("seen").toString();
    }
};

struct Effect {
    const char *key;
    std::function<void(AppSettings &)> flip;
    std::function<QString(Orvane &)> see;
};

const std::vector<Effect> effects = {
    {"openOnClick",
     [](auto &s) {
         s.openOnClick = false;
         s.hoverBehavior = HoverBehavior::none;
     },
     [](auto &o) { return o.afterTap(); }},
    {"hoverBehavior", [](auto &s) { s.hoverBehavior = HoverBehavior::preview; },
     [](auto &o) { return o.afterHover(0.12s); }},
    {"hoverDelay", [](auto &s) { s.hoverDelay = 0.4s; },
     [](auto &o) { return o.afterHover(0.2s); }},
    {"closeOnMouseLeave", [](auto &s) { s.closeOnMouseLeave = false; },
     [](auto &o) { return o.afterLeaving(0.5s); }},
    {"closeDelay", [](auto &s) { s.closeDelay = 2s; }, [](auto &o) { return o.afterLeaving(1s); }},
    {"closeOnClickOutside", [](auto &s) { s.closeOnClickOutside = false; },
     [](auto &o) { return o.afterClickOutside(); }},
    {"toggleHotKeyEnabled", [](auto &s) { s.toggleHotKeyEnabled = false; },
     [](auto &o) { return o.grabbed(); }},
    {"toggleHotKey", [](auto &s) { s.toggleHotKey.keyCode = 0; },
     [](auto &o) { return o.grabbed(); }},
    {"newNoteHotKeyEnabled", [](auto &s) { s.newNoteHotKeyEnabled = false; },
     [](auto &o) { return o.grabbed(); }},
    {"newNoteHotKey", [](auto &s) { s.newNoteHotKey.keyCode = 0; },
     [](auto &o) { return o.grabbed(); }},
    {"clipboardHotKeyEnabled", [](auto &s) { s.clipboardHotKeyEnabled = false; },
     [](auto &o) { return o.grabbed(); }},
    {"clipboardHotKey", [](auto &s) { s.clipboardHotKey.keyCode = 0; },
     [](auto &o) { return o.grabbed(); }},
    {"displayMode", [](auto &s) { s.displayMode = {DisplayMode::Primary{}}; },
     [](auto &o) { return QString::number(o.display(2).isEmpty()); }},
    {"nonNotchStyle", [](auto &s) { s.nonNotchStyle = NonNotchStyle::hidden; },
     [](auto &o) { return o.rest(); }},
    {"fullscreenBehavior", [](auto &s) { s.fullscreenBehavior = FullscreenBehavior::keepVisible; },
     [](auto &o) { return o.inFullScreen(); }},
    {"theme", [](auto &s) { s.theme = ThemePreference::light; },
     [](auto &o) { return o.windowColor(); }},
    {"accent", [](auto &s) { s.accent = AccentChoice::pink; },
     [](auto &o) { return o.theme("accent"); }},
    {"panelSize", [](auto &s) { s.panelSize = PanelSize::large; },
     [](auto &o) { return o.open(3); }},
    {"animationsEnabled", [](auto &s) { s.animationsEnabled = true; },
     [](auto &o) { return o.theme("animated"); }},
    {"animationSpeed", [](auto &s) { s.animationSpeed = AnimationSpeed::fast; },
     [](auto &o) { return o.theme("pace"); }},
    {"moduleOrder", [](auto &s) { s.moduleOrder = {QStringLiteral("activity")}; },
     [](auto &o) { return o.modules(); }},
    {"hiddenModules", [](auto &s) { s.hiddenModules = {QStringLiteral("home")}; },
     [](auto &o) { return o.modules(); }},
    {"homeCardOrder", [](auto &s) { s.homeCardOrder = {QStringLiteral("system")}; },
     [](auto &o) {
         o.change([](auto &s) {
             s.hiddenHomeCards = {};
             s.promoteActiveHomeCards = false;
         });
         return o.cards();
     }},
    {"hiddenHomeCards", [](auto &s) { s.hiddenHomeCards = {}; }, [](auto &o) { return o.cards(); }},
    {"promoteActiveHomeCards", [](auto &s) { s.promoteActiveHomeCards = false; },
     [](auto &o) {
         o.change([](auto &s) { s.hiddenHomeCards = {}; });
         return o.cards();
     }},
    {"favoriteApps", [](auto &s) { s.favoriteApps = {QStringLiteral("a.desktop")}; },
     [](auto &o) { return QString::number(FavoriteApps::rows(o.services).size()); }},
    {"activityRetentionDays", [](auto &s) { s.activityRetentionDays = 1; },
     [](auto &o) { return o.eventsOfTwoDays(); }},
    {"timerSoundEnabled", [](auto &s) { s.timerSoundEnabled = false; },
     [](auto &o) { return o.soundsAfterATimer(); }},
    {"pomodoro", [](auto &s) { s.pomodoro.focusMinutes = 50; },
     [](auto &o) {
         o.services.timers.startPomodoro();
         return TimerCenter::format(o.services.timers.pomodoro()->timer.duration);
     }},
    {"clipboardEnabled", [](auto &s) { s.clipboardEnabled = false; },
     [](auto &o) { return o.copies(); }},
    {"clipboardPaused", [](auto &s) { s.clipboardPaused = true; },
     [](auto &o) { return o.copies(); }},
    {"clipboardIgnoredBundleIDs", [](auto &s) { s.clipboardIgnoredBundleIDs = {}; },
     [](auto &o) { return o.copiesFromAPasswordManager(); }},
    {"clipboardMaxItems", [](auto &s) { s.clipboardMaxItems = 1; },
     [](auto &o) { return o.copiesAfterTwoDays(); }},
    {"clipboardRetentionDays", [](auto &s) { s.clipboardRetentionDays = 1; },
     [](auto &o) { return o.copiesAfterTwoDays(); }},
    {"shelfAutoCleanDays", [](auto &s) { s.shelfAutoCleanDays = 1; },
     [](auto &o) { return o.shelfAfterTwoDays(); }},
    {"dropStraightToShelf", [](auto &s) { s.dropStraightToShelf = true; },
     [](auto &o) { return o.afterDrop(); }},
    {"shelfDropStorage", [](auto &s) { s.shelfDropStorage = ShelfStorage::moved; },
     [](auto &o) {
         o.change([](auto &s) { s.dropStraightToShelf = true; });
         return o.afterDrop();
     }},
    {"hasCompletedOnboarding", [](auto &s) { s.hasCompletedOnboarding = true; },
     [](auto &o) {
         o.change(
             [](auto &s) { s.hiddenHomeCards = {QStringLiteral("shelf")}; }); // wider than its bar
         return o.open(2);
     }},
};

/// Keys whose feature is still to come: the day something reads one, it belongs above.
const QStringList pending =
    QStringLiteral(
        "radialEnabled radialTrigger radialSize radialStyle radialShowsLabels radialContextual "
        "radialStartRing radialLabelsOutside radialRings radialFavorites radialFavoritesName "
        "radialHoldDelay showMediaWhenCollapsed volumeHUDEnabled replaceSystemVolumeHUD "
        "volumeHUDShowsAutomaticChanges volumeHUDStyle eventAlertMinutes "
        "capturesFolderPath screenshotFormat copyScreenshotToClipboard recordSystemAudio "
        "recordMicrophone studioMode studioRecordKeys studioOpenEditor mailNotifications "
        "mailShowsPreview mailSound smartNotchEnabled contextTools appContextOverrides "
        "smartNotchIgnoredApps smartNotchSides")
        .split(u' ');
/// Registered once their action has a handler.
const QStringList pendingHotKeys = {QStringLiteral("search")};
/// The file's form, what no Linux desktop can do, and what only a real status area shows.
const QStringList others =
    QStringLiteral("schemaVersion hapticFeedback showMenuBarIcon").split(u' ');

QString sources()
{
    QString text;
    for (const char *module : {"Velmo", "VelmoCore", "VelmoSystem", "VelmoUI"}) {
        QDirIterator files(QStringLiteral(ORVANE_SOURCES "/") + QLatin1String(module),
                           {QStringLiteral("*.cpp"), QStringLiteral("*.qml")}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            // The settings themselves keep and edit what others read.
            if (!file.fileName().contains(u"/Settings/") && file.open(QFile::ReadOnly))
                text += QString::fromUtf8(file.readAll());
        }
    }
    return text;
}

} // namespace

TEST(SettingsEffects, FollowTheStoreForEachKeyThatHasOne)
{
    for (const Effect &effect : effects) {
        const auto seen = [&](bool isFlipped) {
            Orvane orvane;
            if (isFlipped)
                orvane.change(effect.flip);
            return effect.see(orvane);
        };
        EXPECT_NE(seen(false), seen(true)) << effect.key;
    }
}

TEST(SettingsEffects, AreKnownForEveryKey)
{
    QStringList known = pending + others;
    for (const QString &action : pendingHotKeys)
        known << action + QStringLiteral("HotKey") << action + QStringLiteral("HotKeyEnabled");
    for (const Effect &effect : effects)
        known << QString::fromLatin1(effect.key);
    QStringList keys;
    using Keys = boost::describe::describe_members<AppSettings, boost::describe::mod_public |
                                                                    boost::describe::mod_inherited>;
    boost::mp11::mp_for_each<Keys>([&](auto member) { keys << QString::fromLatin1(member.name); });
    keys.sort();
    known.sort();
    EXPECT_EQ(known, keys);

    const QString code = sources();
    for (const QString &key : pending)
        EXPECT_FALSE(code.contains(QRegularExpression(QStringLiteral("\\b%1\\b").arg(key))))
            << qPrintable(key) << " is read: say what it does";
    for (const QString &action : pendingHotKeys)
        EXPECT_FALSE(code.contains(QStringLiteral("handlers[HotKeyAction::%1]").arg(action)))
            << qPrintable(action) << " has a handler: say what its key does";
}

} // namespace velmo
