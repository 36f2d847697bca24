#pragma once

#include "VelmoCore/Clipboard/ClipboardDefaults.h"
#include "VelmoCore/Foundation/Date.h"
#include "VelmoCore/HotKeys/KeyCombo.h"
#include "VelmoCore/Notch/DisplaySelection.h"
#include "VelmoCore/Notch/NotchLayout.h"
#include "VelmoCore/Notch/NotchMotion.h"
#include "VelmoCore/Notch/NotchStateMachine.h"
#include "VelmoCore/Profiles/ContextTool.h"
#include "VelmoCore/Radial/RadialOptions.h"
#include "VelmoCore/Settings/SettingsOptions.h"
#include "VelmoCore/Shelf/ShelfStorage.h"
#include "VelmoCore/Timers/PomodoroConfig.h"

#include <QString>

#include <boost/describe.hpp>

#include <map>
#include <vector>

namespace velmo {

using StringList = std::vector<QString>;

/// When and where the panel opens and closes.
struct PanelSettings {
    bool openOnClick = true;
    HoverBehavior hoverBehavior = HoverBehavior::expand;
    Seconds hoverDelay = 0.12s;
    bool closeOnMouseLeave = true;
    Seconds closeDelay = 0.5s;
    bool closeOnClickOutside = true;
    bool hapticFeedback = true;
    bool showMenuBarIcon = true;
    DisplayMode displayMode;
    NonNotchStyle nonNotchStyle = NonNotchStyle::pill;
    FullscreenBehavior fullscreenBehavior = FullscreenBehavior::hide;

    bool operator==(const PanelSettings &) const = default;
};
BOOST_DESCRIBE_STRUCT(PanelSettings, (),
                      (openOnClick, hoverBehavior, hoverDelay, closeOnMouseLeave, closeDelay,
                       closeOnClickOutside, hapticFeedback, showMenuBarIcon, displayMode,
                       nonNotchStyle, fullscreenBehavior))

/// How the panel looks and moves.
struct AppearanceSettings {
    ThemePreference theme = ThemePreference::dark;
    AccentChoice accent = AccentChoice::silver;
    PanelSize panelSize = PanelSize::regular;
    bool animationsEnabled = true;
    AnimationSpeed animationSpeed = AnimationSpeed::normal;

    bool operator==(const AppearanceSettings &) const = default;
};
BOOST_DESCRIBE_STRUCT(AppearanceSettings, (),
                      (theme, accent, panelSize, animationsEnabled, animationSpeed))

/// The global shortcuts.
struct HotKeySettings {
    bool toggleHotKeyEnabled = true;
    KeyCombo toggleHotKey{45, KeyCombo::control | KeyCombo::option};
    bool newNoteHotKeyEnabled = true;
    KeyCombo newNoteHotKey{46, KeyCombo::control | KeyCombo::option};
    bool clipboardHotKeyEnabled = true;
    KeyCombo clipboardHotKey{9, KeyCombo::control | KeyCombo::option};
    bool searchHotKeyEnabled = true;
    KeyCombo searchHotKey{40, KeyCombo::control | KeyCombo::option};

    bool operator==(const HotKeySettings &) const = default;
};
BOOST_DESCRIBE_STRUCT(HotKeySettings, (),
                      (toggleHotKeyEnabled, toggleHotKey, newNoteHotKeyEnabled, newNoteHotKey,
                       clipboardHotKeyEnabled, clipboardHotKey, searchHotKeyEnabled, searchHotKey))

/// Pages and cards. An empty order is the built-in one.
struct ModuleSettings {
    StringList moduleOrder;
    StringList hiddenModules;
    StringList homeCardOrder;
    StringList hiddenHomeCards = defaultHiddenHomeCards();
    StringList favoriteApps;
    bool promoteActiveHomeCards = true;

    static StringList defaultHiddenHomeCards()
    {
        return {QStringLiteral("notes"), QStringLiteral("clipboard"), QStringLiteral("system"),
                QStringLiteral("captures")};
    }

    bool operator==(const ModuleSettings &) const = default;
};
BOOST_DESCRIBE_STRUCT(ModuleSettings, (),
                      (moduleOrder, hiddenModules, homeCardOrder, hiddenHomeCards, favoriteApps,
                       promoteActiveHomeCards))

/// The ring menu at the cursor.
struct RadialSettings {
    bool radialEnabled = true;
    RadialTrigger radialTrigger = RadialTrigger::fn;
    RadialSize radialSize = RadialSize::regular;
    RadialStyle radialStyle = RadialStyle::classic;
    bool radialShowsLabels = true;
    bool radialContextual = true;
    RadialRingKind radialStartRing = RadialRingKind::context;
    bool radialLabelsOutside = false;
    std::vector<RadialRingKind> radialRings = {RadialRingKind::context, RadialRingKind::general,
                                               RadialRingKind::apps, RadialRingKind::music,
                                               RadialRingKind::captures};
    StringList radialFavorites;
    QString radialFavoritesName = QStringLiteral("Meu anel");
    Seconds radialHoldDelay = 0.18s;

    bool operator==(const RadialSettings &) const = default;
};
BOOST_DESCRIBE_STRUCT(RadialSettings, (),
                      (radialEnabled, radialTrigger, radialSize, radialStyle, radialShowsLabels,
                       radialContextual, radialStartRing, radialLabelsOutside, radialRings,
                       radialFavorites, radialFavoritesName, radialHoldDelay))

/// Music and volume.
struct MediaSettings {
    bool showMediaWhenCollapsed = true;
    bool volumeHUDEnabled = true;
    bool replaceSystemVolumeHUD = false;
    bool volumeHUDShowsAutomaticChanges = true;
    VolumeHUDStyle volumeHUDStyle = VolumeHUDStyle::bars;

    bool operator==(const MediaSettings &) const = default;
};
BOOST_DESCRIBE_STRUCT(MediaSettings, (),
                      (showMediaWhenCollapsed, volumeHUDEnabled, replaceSystemVolumeHUD,
                       volumeHUDShowsAutomaticChanges, volumeHUDStyle))

/// What reminds the user of time.
struct TimeSettings {
    int eventAlertMinutes = 5;
    bool timerSoundEnabled = true;
    PomodoroConfig pomodoro;

    bool operator==(const TimeSettings &) const = default;
};
BOOST_DESCRIBE_STRUCT(TimeSettings, (), (eventAlertMinutes, timerSoundEnabled, pomodoro))

/// The clipboard's history.
struct ClipboardSettings {
    bool clipboardEnabled = true;
    bool clipboardPaused = false;
    int clipboardMaxItems = 200;
    int clipboardRetentionDays = 30;
    StringList clipboardIgnoredBundleIDs = ClipboardDefaults::ignoredBundleIDs();

    bool operator==(const ClipboardSettings &) const = default;
};
BOOST_DESCRIBE_STRUCT(ClipboardSettings, (),
                      (clipboardEnabled, clipboardPaused, clipboardMaxItems, clipboardRetentionDays,
                       clipboardIgnoredBundleIDs))

/// Shelf, screenshots and recordings.
struct CaptureSettings {
    int shelfAutoCleanDays = 7;
    ShelfStorage shelfDropStorage = ShelfStorage::reference;
    bool dropStraightToShelf = false;
    QString capturesFolderPath; ///< empty for the default folder
    ScreenshotFileFormat screenshotFormat = ScreenshotFileFormat::png;
    bool copyScreenshotToClipboard = true;
    bool recordSystemAudio = false;
    bool recordMicrophone = false;
    bool studioMode = true;
    bool studioRecordKeys = false;
    bool studioOpenEditor = true;

    bool operator==(const CaptureSettings &) const = default;
};
BOOST_DESCRIBE_STRUCT(CaptureSettings, (),
                      (shelfAutoCleanDays, shelfDropStorage, dropStraightToShelf,
                       capturesFolderPath, screenshotFormat, copyScreenshotToClipboard,
                       recordSystemAudio, recordMicrophone, studioMode, studioRecordKeys,
                       studioOpenEditor))

struct MailSettings {
    bool mailNotifications = true;
    bool mailShowsPreview = true;
    bool mailSound = false;

    bool operator==(const MailSettings &) const = default;
};
BOOST_DESCRIBE_STRUCT(MailSettings, (), (mailNotifications, mailShowsPreview, mailSound))

/// The tools for the application in front.
struct SmartNotchSettings {
    bool smartNotchEnabled = true;
    std::map<QString, std::vector<ContextTool>> contextTools;  ///< by category
    std::map<QString, AppContextCategory> appContextOverrides; ///< by bundle identifier
    StringList smartNotchIgnoredApps;
    SmartNotchSides smartNotchSides = SmartNotchSides::right;

    bool operator==(const SmartNotchSettings &) const = default;
};
BOOST_DESCRIBE_STRUCT(SmartNotchSettings, (),
                      (smartNotchEnabled, contextTools, appContextOverrides, smartNotchIgnoredApps,
                       smartNotchSides))

/// Everything the user can set. One flat record in JSON: the groups are for the reader.
struct AppSettings : PanelSettings,
                     AppearanceSettings,
                     HotKeySettings,
                     ModuleSettings,
                     RadialSettings,
                     MediaSettings,
                     TimeSettings,
                     ClipboardSettings,
                     CaptureSettings,
                     MailSettings,
                     SmartNotchSettings {
    static constexpr int currentSchemaVersion = 5;

    int schemaVersion = currentSchemaVersion;
    int activityRetentionDays = 7;
    bool hasCompletedOnboarding = false;

    bool operator==(const AppSettings &) const = default;
};
BOOST_DESCRIBE_STRUCT(AppSettings,
                      (PanelSettings, AppearanceSettings, HotKeySettings, ModuleSettings,
                       RadialSettings, MediaSettings, TimeSettings, ClipboardSettings,
                       CaptureSettings, MailSettings, SmartNotchSettings),
                      (schemaVersion, activityRetentionDays, hasCompletedOnboarding))

} // namespace velmo
