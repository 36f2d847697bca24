#pragma once

#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoSystem/Input/GlobalHotKeyCenter.h"
#include "VelmoSystem/Ports/Workspace.h"

#include <QObject>

#include <boost/describe.hpp>

#include <functional>
#include <map>
#include <optional>

namespace velmo {

/// What a global shortcut does. An earlier action has the right of way over a later one.
enum class HotKeyAction { toggle, newNote, clipboard, search };
BOOST_DESCRIBE_ENUM(HotKeyAction, toggle, newNote, clipboard, search)

/// Where the settings hold an action's shortcut.
struct HotKeySetting {
    bool HotKeySettings::*isEnabled;
    KeyCombo HotKeySettings::*combo;
};

/// Keeps the registered global shortcuts as the settings say, also when they change. What another
/// application has is tried again when the keyboard's layout changes and, ever less often, after
/// windows came and went: nothing says when a shortcut is free, and an idle machine isn't woken.
class HotKeyController : public QObject {
    Q_OBJECT

public:
    static constexpr Seconds firstRetryDelay = 1s;
    static constexpr Seconds longestRetryDelay = 64s;

    /// Registers nothing before the first `apply`. All references must outlive the controller.
    HotKeyController(SettingsStore &settings, GlobalHotKeyCenter &center, Workspace &workspace,
                     Scheduler &scheduler);
    ~HotKeyController() override;

    static HotKeySetting setting(HotKeyAction action);
    /// What the user calls the action.
    static QString title(HotKeyAction action);
    /// Says to the user that the action has a shortcut already.
    static QString sameAs(HotKeyAction action);

    /// What each action runs. An action without a handler isn't registered.
    std::map<HotKeyAction, std::function<void()>> handlers;

    /// Registers the enabled shortcuts again, or none while suspended. Failures go to `errors`.
    void apply();
    /// Tries what was refused or lost once more.
    void retry();
    /// No shortcut is registered while suspended, so that a recorder field can capture its keys.
    void setSuspended(bool isSuspended);

    /// The action's shortcut as "Ctrl+Alt+N", whether it is enabled or not.
    QString displayString(HotKeyAction action) const;
    /// The enabled action beside this one that has the shortcut.
    std::optional<HotKeyAction> otherWith(const KeyCombo &combo, HotKeyAction action) const;
    /// Why enabled shortcuts aren't registered, for the user.
    const std::map<HotKeyAction, QString> &errors() const { return m_errors; }

Q_SIGNALS:
    void errorsChanged();

private:
    bool isWanted(HotKeyAction action) const;
    void registerEnabled();
    void retryLater();
    void lost(GlobalHotKeyCenter::ID id, const LocalizedError &reason);
    void hotKeySettingsChanged(const HotKeySettings &before, const HotKeySettings &after);

    SettingsStore &m_settings;
    GlobalHotKeyCenter &m_center;
    SettingsStore::Observation m_observer;
    Scheduler &m_scheduler;
    std::map<HotKeyAction, GlobalHotKeyCenter::ID> m_registered;
    std::map<HotKeyAction, QString> m_errors;
    bool m_isRefused = false; ///< the desktop said no to one of them
    Seconds m_retryDelay = firstRetryDelay;
    ScheduledTask m_retryTask;
    bool m_isSuspended = false;
};

} // namespace velmo
