#include "VelmoUI/HotKeys/HotKeyController.h"

#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/HotKeys/KeyNames.h"

#include <utility>

namespace velmo {

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

HotKeyController::HotKeyController(SettingsStore &settings, GlobalHotKeyCenter &center)
    : m_settings(settings), m_center(center),
      m_observer(settings.observe([this](const AppSettings &before, const AppSettings &after) {
          hotKeySettingsChanged(before, after);
      }))
{
}

HotKeyController::~HotKeyController()
{
    m_settings.removeObserver(m_observer);
    for (const GlobalHotKeyCenter::ID id : m_registered)
        m_center.unregister(id);
}

void HotKeyController::apply()
{
    for (const GlobalHotKeyCenter::ID id : std::exchange(m_registered, {}))
        m_center.unregister(id);
    if (m_isSuspended)
        return;
    const auto before = std::exchange(m_errors, {});
    registerEnabled();
    if (m_errors != before)
        Q_EMIT errorsChanged();
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

void HotKeyController::registerEnabled()
{
    const HotKeySettings &settings = m_settings.settings();
    std::map<KeyCombo, HotKeyAction> taken;
    for (const HotKeyAction action : {HotKeyAction::toggle, HotKeyAction::newNote,
                                      HotKeyAction::clipboard, HotKeyAction::search}) {
        const KeyCombo combo = settings.*setting(action).combo;
        // A shortcut that would do nothing stays with the other applications.
        if (!(settings.*setting(action).isEnabled) || !handlers.contains(action))
            continue;
        if (const auto [earlier, isFirst] = taken.emplace(combo, action); !isFirst) {
            m_errors[action] = QStringLiteral("Mesmo atalho de “%1”.").arg(title(earlier->second));
            continue;
        }
        try {
            m_registered.push_back(m_center.registerHotKey(combo, handlers.at(action)));
        } catch (const GlobalHotKeyCenter::RegistrationError &error) {
            m_errors[action] = error.description();
            qCWarning(Log::input).noquote() << QStringLiteral("Atalho %1 não registrado: %2")
                                                   .arg(title(action), error.description());
        }
    }
}

void HotKeyController::hotKeySettingsChanged(const HotKeySettings &before,
                                             const HotKeySettings &after)
{
    if (before != after)
        apply();
}

} // namespace velmo
