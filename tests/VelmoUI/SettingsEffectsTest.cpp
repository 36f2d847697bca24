#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoCore/Clipboard/ClipboardStore.h"
#include "VelmoCore/HotKeys/KeyNames.h"
#include "VelmoCore/Settings/SettingsCoder.h"
#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoCore/Shelf/ShelfStore.h"
#include "VelmoCore/Timers/TimerCenter.h"
#include "VelmoSystem/Calendar/CalendarService.h"
#include "VelmoSystem/Clipboard/ClipboardMonitor.h"
#include "VelmoSystem/Input/HotKeyController.h"
#include "VelmoSystem/Mail/MailService.h"
#include "VelmoUI/Composition/ServiceWiring.h"
#include "VelmoUI/Modules/Frame/ModuleRegistry.h"
#include "VelmoUI/Modules/Home/FavoriteApps.h"
#include "VelmoUI/Modules/Home/HomeCardSources.h"
#include "VelmoUI/Notch/NotchContent.h"
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
        addModules();
        for (const HotKeyAction action :
             {HotKeyAction::toggle, HotKeyAction::newNote, HotKeyAction::clipboard})
            services.hotKeys->handlers[action] = [] {};
        desktop.power.info = BatteryInfo{.percent = 5};
        desktop.applications.entries = {{u"a.desktop"_qs, u"A"_qs, {}, {}}};
        ServiceWiring::start(services);
        change([](AppSettings &settings) { settings.displayMode = {DisplayMode::All{}}; });
        desktop.displays.descriptors = {FakeDesktop::screen(1), FakeDesktop::screen(2)};
        coordinator.start();
        services.hotKeys->apply();
    }
    void TestBody() override {}
    /// Sets the keys of a piece of a settings file.
    void set(const QByteArray &entries)
    {
        change([&](AppSettings &settings) {
            auto keys = QJsonDocument::fromJson(SettingsCoder::encode(settings)).object();
            const auto changed = QJsonDocument::fromJson('{' + entries + '}').object();
            for (auto key = changed.begin(); key != changed.end(); ++key)
                keys[key.key()] = key.value();
            const auto result = SettingsCoder::decode(QJsonDocument(keys).toJson());
            EXPECT_TRUE(result.discardedKeys.empty()) << entries.constData();
            settings = result.settings;
        });
    }
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
        for (const auto *module : services.modules->visible(services.settings->settings()))
            ids.append(module->id());
        return ids.join(u' ');
    }
    QString cards()
    {
        QStringList names;
        for (const auto &card : HomeCardSources{*services.modules, *services.settings}.shown())
            names.append(HomeCards::name(card.card));
        return names.join(u' ');
    }
    QString favorites()
    {
        return QString::number(FavoriteApps(*services.settings, services.platform.applications,
                                            *services.activity, services.platform.scheduler)
                                   .rows()
                                   .size());
    }
    QString isThere(DisplayID id) const { return display(id).isEmpty() ? "no" : "yes"; }
    QString focusTime()
    {
        services.timers->startPomodoro();
        return TimerCenter::format(services.timers->pomodoro()->timer.duration);
    }
    QString open(int extent)
    {
        coordinator.open({.module = u"home"_qs});
        return QString::number(shape()[extent].toInt());
    }
    QString inFullScreen()
    {
        desktop.workspace.show({{7, FakeDesktop::screen(1).frame, true}});
        wait(0.35s);
        return isVisible(1) ? u"visible"_qs : u"hidden"_qs;
    }
    QString rest()
    {
        auto *content = view().rootObject()->property("content").value<NotchContent *>();
        return content->shape()->isShapeVisible() ? u"visible"_qs : u"hidden"_qs;
    }
    QString windowColor()
    {
        SettingsWindowController controller(services.settingsWindow());
        controller.show(SettingsPane::general);
        for (QWindow *window : QGuiApplication::topLevelWindows()) {
            auto *settings = qobject_cast<QQuickView *>(window);
            if (!settings || settings->title() != u"Ajustes do Orvane")
                continue;
            while (!settings->rootObject())
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            return settings->rootObject()->property("color").toString();
        }
        return {};
    }
    QString eventsOfTwoDays()
    {
        const Date now = desktop.scheduler.now();
        services.activity->post(
            ActivityEvent::make(now - 48h, {}, u"Antes"_qs, FeedbackStyle::info, u"test"_qs));
        return QString::number(services.activity->history().size());
    }
    /// The snippet on the banner and the sounds.
    QString newMail()
    {
        services.isPanelShown = [] { return true; };
        MailMessage message;
        message.snippet = u"Oi"_qs;
        services.mail->onNewMail({message});
        MailBanner *banner =
            view().rootObject()->property("content").value<NotchContent *>()->mailBanner();
        return QString::number(banner->isShown()) + banner->snippet() +
               QString::number(desktop.sounds.played.size());
    }
    /// What counts down to an event that begins in three minutes.
    QString countdown()
    {
        services.calendar->start();
        const QDateTime start = localDateTime(desktop.scheduler.now() + 180s).toUTC();
        desktop.calendars.set(
            {{.id = u"a"_qs}},
            {{u"a"_qs, u"x"_qs,
              "BEGIN:VEVENT\nUID:x\nDTSTART:" +
                  start.toString(u"yyyyMMdd'T'HHmmss'Z'"_qs).toLatin1() + "\nEND:VEVENT\n"}});
        while (services.calendar->upcoming().empty())
            desktop.scheduler.runPosted();
        return QString::number(services.activity->live().size());
    }
    QString soundsAfterATimer()
    {
        services.timers->startTimer(5s);
        wait(5s);
        return QString::number(desktop.sounds.played.size());
    }
    QString copiesFromAPasswordManager()
    {
        desktop.frontApplication.info = {u"KeePassXC"_qs, u"com.keepassxc.keepassxc"_qs};
        return copies();
    }
    QString copies()
    {
        desktop.pasteboard.offer({{Pasteboard::textType.toString(), "a"}});
        wait(ClipboardMonitor::beat);
        return QString::number(services.clipboard->items().size());
    }
    QString copiesAfterTwoDays()
    {
        for (const QString &text : {u"a"_qs, u"b"_qs})
            services.clipboard->add(ClipItems::fromText(text, {}, desktop.scheduler.now()).value());
        wait(48h);
        services.clipboard->add(ClipItems::fromText(u"c"_qs, {}, desktop.scheduler.now()).value());
        return QString::number(services.clipboard->items().size());
    }
    QString shelfAfterTwoDays()
    {
        services.shelf->addText(u"texto"_qs);
        wait(48h);
        return QString::number(services.shelf->items().size());
    }
    /// What shows, how much is on the shelf, and whether the file is where it was.
    QString afterDrop()
    {
        const QString file = desktop.folder.path(u"a.txt"_qs);
        desktop.folder.write(u"a.txt"_qs, "a");
        coordinator.openFiles({QUrl::fromLocalFile(file)});
        return u"%1 %2 %3"_qs.arg(shown())
            .arg(services.shelf->items().size())
            .arg(QFile::exists(file));
    }
    QString theme(const char *property)
    {
        QQmlComponent probe(qmlEngine(view().rootObject()));
        probe.setData(
            "import QtQuick; import Velmo.Design; QtObject { property string seen: Theme." +
                QByteArray(property) + " }",
            {});
        const std::unique_ptr<QObject> made(probe.create());
        return made->property("seen").toString();
    }
};

/// A key, a value that isn't its default one, and where it shows.
struct Effect {
    const char *key;
    QByteArray value;
    std::function<QString(Orvane &)> see;
    /// What else has to be set so that it shows.
    QByteArray others = {};
};

const QByteArray none = R"({"keyCode":0,"modifiers":256})";

const std::vector<Effect> effects = {
    {"openOnClick", "false", &Orvane::afterTap, R"("hoverBehavior":"none")"},
    {"hoverBehavior", R"("preview")", [](auto &o) { return o.afterHover(0.12s); }},
    {"hoverDelay", "5", [](auto &o) { return o.afterHover(4s); }},
    {"closeOnMouseLeave", "false", [](auto &o) { return o.afterLeaving(0.5s); }},
    {"closeDelay", "9", [](auto &o) { return o.afterLeaving(8s); }},
    {"closeOnClickOutside", "false", &Orvane::afterClickOutside},
    {"toggleHotKeyEnabled", "false", &Orvane::grabbed},
    {"toggleHotKey", none, &Orvane::grabbed},
    {"newNoteHotKeyEnabled", "false", &Orvane::grabbed},
    {"newNoteHotKey", none, &Orvane::grabbed},
    {"clipboardHotKeyEnabled", "false", &Orvane::grabbed},
    {"clipboardHotKey", none, &Orvane::grabbed},
    {"displayMode", R"({"primary":{}})", [](auto &o) { return o.isThere(2); }},
    {"nonNotchStyle", R"("hidden")", &Orvane::rest},
    {"fullscreenBehavior", R"("keepVisible")", &Orvane::inFullScreen},
    {"theme", R"("light")", &Orvane::windowColor},
    {"accent", R"("pink")", [](auto &o) { return o.theme("accent"); }},
    {"panelSize", R"("large")", [](auto &o) { return o.open(3); }},
    {"animationsEnabled", "true", [](auto &o) { return o.theme("animated"); }},
    {"animationSpeed", R"("fast")", [](auto &o) { return o.theme("pace"); }},
    {"moduleOrder", R"(["activity"])", &Orvane::modules},
    {"hiddenModules", R"(["home"])", &Orvane::modules},
    {"homeCardOrder", R"(["system"])", &Orvane::cards,
     R"("hiddenHomeCards":[],"promoteActiveHomeCards":false)"},
    {"hiddenHomeCards", "[]", &Orvane::cards},
    {"promoteActiveHomeCards", "false", &Orvane::cards, R"("hiddenHomeCards":[])"},
    {"favoriteApps", R"(["a.desktop"])", &Orvane::favorites},
    {"activityRetentionDays", "1", &Orvane::eventsOfTwoDays},
    {"timerSoundEnabled", "false", &Orvane::soundsAfterATimer},
    {"mailNotifications", "false", &Orvane::newMail},
    {"mailShowsPreview", "false", &Orvane::newMail},
    {"mailSound", "true", &Orvane::newMail},
    {"eventAlertMinutes", "0", &Orvane::countdown},
    {"pomodoro",
     R"({"focusMinutes":50,"shortBreakMinutes":5,"longBreakMinutes":15,"cyclesBeforeLongBreak":4,
         "autoAdvance":true})",
     &Orvane::focusTime},
    {"clipboardEnabled", "false", &Orvane::copies},
    {"clipboardPaused", "true", &Orvane::copies},
    {"clipboardIgnoredBundleIDs", "[]", &Orvane::copiesFromAPasswordManager},
    {"clipboardMaxItems", "1", &Orvane::copiesAfterTwoDays},
    {"clipboardRetentionDays", "1", &Orvane::copiesAfterTwoDays},
    {"shelfAutoCleanDays", "1", &Orvane::shelfAfterTwoDays},
    {"dropStraightToShelf", "true", &Orvane::afterDrop},
    // The welcome makes the row of cards wider than its bar.
    {"hasCompletedOnboarding", "true", [](auto &o) { return o.open(2); },
     R"("hiddenHomeCards":["agenda","shelf"])"},
};

/// Keys whose feature is still to come: the day something reads one, it belongs above.
const QStringList pending =
    QStringLiteral(
        "radialEnabled radialTrigger radialSize radialStyle radialShowsLabels radialContextual "
        "radialStartRing radialLabelsOutside radialRings radialFavorites radialFavoritesName "
        "radialHoldDelay showMediaWhenCollapsed volumeHUDEnabled replaceSystemVolumeHUD "
        "volumeHUDShowsAutomaticChanges volumeHUDStyle "
        "shelfDropStorage capturesFolderPath screenshotFormat copyScreenshotToClipboard "
        "recordSystemAudio "
        "recordMicrophone studioMode studioRecordKeys studioOpenEditor "
        "smartNotchEnabled contextTools appContextOverrides "
        "smartNotchIgnoredApps smartNotchSides")
        .split(u' ');
/// Registered once their action has a handler.
const QStringList pendingHotKeys = {u"search"_qs};
/// The file's form, what no Linux desktop can do, and what only a real status area shows.
const QStringList others = u"schemaVersion hapticFeedback showMenuBarIcon"_qs.split(u' ');

QString sources()
{
    QString text;
    for (const char *module : {"Velmo", "VelmoCore", "VelmoSystem", "VelmoUI"}) {
        QDirIterator files(QLatin1String(ORVANE_SOURCES "/") + module, {"*.cpp", "*.qml"},
                           QDir::Files, QDirIterator::Subdirectories);
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
        const auto seen = [&](const QByteArray &entry) {
            Orvane orvane;
            orvane.set(effect.others);
            orvane.set(entry);
            return effect.see(orvane);
        };
        EXPECT_NE(seen({}), seen(QByteArray("\"") + effect.key + "\":" + effect.value))
            << effect.key;
    }
}

TEST(SettingsEffects, AreKnownForEveryKey)
{
    QStringList known = pending + others;
    for (const QString &action : pendingHotKeys)
        known << action + u"HotKey"_qs << action + u"HotKeyEnabled"_qs;
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
        EXPECT_FALSE(code.contains(QRegularExpression(u"\\b%1\\b"_qs.arg(key))))
            << qPrintable(key) << " is read: say what it does";
    for (const QString &action : pendingHotKeys)
        EXPECT_FALSE(code.contains(u"handlers[HotKeyAction::%1]"_qs.arg(action)))
            << qPrintable(action) << " has a handler: say what its key does";
}

} // namespace velmo
