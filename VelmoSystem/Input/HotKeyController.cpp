#include "VelmoSystem/Input/HotKeyController.h"

#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/HotKeys/KeyNames.h"

#include <algorithm>
#include <array>
#include <utility>

namespace velmo {

namespace {

constexpr std::array actions = {HotKeyAction::toggle, HotKeyAction::newNote,
                                HotKeyAction::clipboard, HotKeyAction::search};

} // namespace

HotKeySetting HotKeyController::setting(HotKeyAction action)
{
    switch (action) {
    case HotKeyAction::toggle:
        return {&HotKeySettings::toggleHotKeyEnabled, &HotKeySettings::toggleHotKey};
    case HotKeyAction::newNote:
        return {&HotKeySettings::newNoteHotKeyEnabled, &HotKeySettings::newNoteHotKey};
    case HotKeyAction::clipboard:
        return {&HotKeySettings::clipboardHotKeyEnabled, &HotKeySettings::clipboardHotKey};
    case HotKeyAction::search:
        return {&HotKeySettings::searchHotKeyEnabled, &HotKeySettings::searchHotKey};
    }
    Q_UNREACHABLE();
}

QString HotKeyController::title(HotKeyAction action)
{
    switch (action) {
    case HotKeyAction::toggle:
        return QStringLiteral("Abrir e fechar o painel");
    case HotKeyAction::newNote:
        return QStringLiteral("Nova nota");
    case HotKeyAction::clipboard:
        return QStringLiteral("Histórico do clipboard");
    case HotKeyAction::search:
        return QStringLiteral("Busca unificada");
    }
    Q_UNREACHABLE();
}

QString HotKeyController::sameAs(HotKeyAction action)
{
    return QStringLiteral("Mesmo atalho de “%1”.").arg(title(action));
}

HotKeyController::HotKeyController(SettingsStore &settings, GlobalHotKeyCenter &center,
                                   Workspace &workspace, Scheduler &scheduler)
    : m_settings(settings), m_center(center),
      m_observer(settings.observe([this](const AppSettings &before, const AppSettings &after) {
          hotKeySettingsChanged(before, after);
      })),
      m_scheduler(scheduler)
{
    m_center.onLost = [this](GlobalHotKeyCenter::ID id, const LocalizedError &reason) {
        lost(id, reason);
    };
    m_center.onKeyboardChanged = [this] { retry(); };
    connect(&workspace, &Workspace::windowsChanged, this, &HotKeyController::retryLater);
    connect(&workspace, &Workspace::frontApplicationChanged, this, &HotKeyController::retryLater);
}

HotKeyController::~HotKeyController()
{
    m_center.onLost = nullptr;
    m_center.onKeyboardChanged = nullptr;
    for (const auto &[action, id] : m_registered)
        m_center.unregister(id);
}

void HotKeyController::apply()
{
    for (const auto &[action, id] : std::exchange(m_registered, {}))
        m_center.unregister(id);
    m_retryTask.cancel();
    m_retryDelay = firstRetryDelay;
    if (!m_isSuspended)
        registerEnabled();
}

void HotKeyController::retry()
{
    if (m_isRefused && !m_isSuspended)
        registerEnabled();
}

void HotKeyController::setSuspended(bool isSuspended)
{
    if (std::exchange(m_isSuspended, isSuspended) != isSuspended)
        apply();
}

QString HotKeyController::displayString(HotKeyAction action) const
{
    const HotKeySettings &settings = m_settings.settings();
    return KeyNames::display(settings.*setting(action).combo);
}

std::optional<HotKeyAction> HotKeyController::otherWith(const KeyCombo &combo,
                                                        HotKeyAction action) const
{
    const auto *const other = std::ranges::find_if(actions, [&](HotKeyAction one) {
        return one != action && isWanted(one) && m_settings.settings().*setting(one).combo == combo;
    });
    return other == actions.end() ? std::nullopt : std::optional(*other);
}

bool HotKeyController::isWanted(HotKeyAction action) const
{
    // A shortcut that would do nothing stays with the other applications.
    return m_settings.settings().*setting(action).isEnabled && handlers.contains(action);
}

void HotKeyController::registerEnabled()
{
    const auto before = std::exchange(m_errors, {});
    m_isRefused = false;
    std::map<KeyCombo, HotKeyAction> taken;
    for (const HotKeyAction action : actions) {
        const KeyCombo combo = m_settings.settings().*setting(action).combo;
        if (!isWanted(action))
            continue;
        if (const auto [earlier, isFirst] = taken.emplace(combo, action); !isFirst) {
            m_errors[action] = sameAs(earlier->second);
            continue;
        }
        if (m_registered.contains(action))
            continue;
        try {
            m_registered[action] = m_center.registerHotKey(combo, handlers.at(action));
        } catch (const GlobalHotKeyCenter::RegistrationError &error) {
            m_errors[action] = error.description();
            m_isRefused = m_isRefused || combo.isAcceptableGlobalShortcut();
        }
    }
    for (const auto &[action, error] : m_errors) {
        const auto known = before.find(action);
        if (known == before.end() || known->second != error)
            qCWarning(Log::input).noquote()
                << QStringLiteral("Atalho %1 não registrado: %2").arg(title(action), error);
    }
    if (m_errors != before)
        Q_EMIT errorsChanged();
}

void HotKeyController::retryLater()
{
    if (!m_isRefused || m_isSuspended || m_retryTask.isPending())
        return;
    m_retryTask = m_scheduler.after(m_retryDelay, [this] {
        const auto before = m_errors;
        retry();
        m_retryDelay =
            m_errors == before ? std::min(2 * m_retryDelay, longestRetryDelay) : firstRetryDelay;
    });
}

void HotKeyController::lost(GlobalHotKeyCenter::ID id, const LocalizedError &reason)
{
    const auto found =
        std::ranges::find(m_registered, id, [](const auto &one) { return one.second; });
    if (found == m_registered.end())
        return;
    const HotKeyAction action = found->first;
    m_registered.erase(found);
    m_errors[action] = reason.description();
    m_isRefused = true;
    qCWarning(Log::input).noquote()
        << QStringLiteral("Atalho %1 perdido: %2").arg(title(action), reason.description());
    Q_EMIT errorsChanged();
}

void HotKeyController::hotKeySettingsChanged(const HotKeySettings &before,
                                             const HotKeySettings &after)
{
    if (before != after)
        apply();
}

} // namespace velmo
