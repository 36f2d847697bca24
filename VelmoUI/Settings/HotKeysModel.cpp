#include "VelmoUI/Settings/HotKeysModel.h"

#include "VelmoCore/HotKeys/KeyNames.h"

#include <QKeyEvent>

namespace velmo {

namespace {

/// In a global shortcut `command` is the Super key.
KeyModifiers globalModifiers(Qt::KeyboardModifiers held)
{
    KeyModifiers modifiers;
    for (const auto &[key, bit] : {std::pair{Qt::ControlModifier, KeyCombo::control},
                                   {Qt::AltModifier, KeyCombo::option},
                                   {Qt::ShiftModifier, KeyCombo::shift},
                                   {Qt::MetaModifier, KeyCombo::command}}) {
        if (held.testFlag(key))
            modifiers = modifiers | bit;
    }
    return modifiers;
}

QString idOf(HotKeyAction action)
{
    return QString::fromLatin1(boost::describe::enum_to_string(action, ""));
}

std::optional<HotKeyAction> actionOf(const QString &id)
{
    HotKeyAction action{};
    if (!boost::describe::enum_from_string(id.toUtf8().constData(), action))
        return std::nullopt;
    return action;
}

} // namespace

HotKeysModel::HotKeysModel(SettingsStore &settings, HotKeyController &hotKeys,
                           const HotKeyGrabber &keyboard)
    : m_settings(settings), m_hotKeys(hotKeys), m_keyboard(keyboard),
      m_observer(settings.observe([this](const auto &, const auto &) { update(); }))
{
    connect(&hotKeys, &HotKeyController::errorsChanged, this, &HotKeysModel::update);
    update();
}

HotKeysModel::~HotKeysModel()
{
    stopRecording();
}

void HotKeysModel::setEnabled(const QString &id, bool isEnabled)
{
    if (const auto action = actionOf(id)) {
        m_settings.update([&](AppSettings &settings) {
            settings.*HotKeyController::setting(*action).isEnabled = isEnabled;
        });
    }
}

void HotKeysModel::startRecording(const QString &id)
{
    m_recording = actionOf(id);
    m_recordingIssue.clear();
    m_hotKeys.setSuspended(m_recording.has_value());
    update();
}

void HotKeysModel::stopRecording()
{
    if (!m_recording)
        return;
    m_recording.reset();
    m_hotKeys.setSuspended(false);
    update();
}

void HotKeysModel::record(const QKeyEvent &press)
{
    const bool isPlain = press.modifiers() == Qt::NoModifier;
    if (isPlain && (press.key() == Qt::Key_Escape || press.key() == Qt::Key_Backspace)) {
        stopRecording();
        return;
    }
    auto keyCode = m_keyboard.keyCode(press.nativeScanCode()); // shift changes the symbol
    if (!keyCode)
        keyCode = KeyNames::keyCode(press.nativeVirtualKey());
    if (!keyCode)
        return; // a modifier on its way, or a key that no shortcut can have
    const KeyCombo combo{*keyCode, globalModifiers(press.modifiers())};
    const auto owner = m_hotKeys.otherWith(combo, *m_recording);
    if (owner || !combo.isAcceptableGlobalShortcut()) {
        m_recordingIssue =
            owner ? HotKeyController::sameAs(*owner)
                  : GlobalHotKeyCenter::RegistrationError::notAcceptable().description();
        update();
        return;
    }
    m_settings.update([&](AppSettings &settings) {
        const HotKeySetting setting = HotKeyController::setting(*m_recording);
        settings.*setting.combo = combo;
        settings.*setting.isEnabled = true;
    });
    stopRecording();
}

void HotKeysModel::update()
{
    const HotKeySettings &settings = m_settings.settings();
    std::vector<HotKeyRow> rows;
    for (const auto &[action, handler] : m_hotKeys.handlers) {
        const bool isRecording = m_recording == action;
        const auto error = m_hotKeys.errors().find(action);
        rows.push_back(
            {idOf(action), HotKeyController::title(action),
             isRecording ? QStringLiteral("Pressione as teclas…") : m_hotKeys.displayString(action),
             isRecording                         ? m_recordingIssue
             : error == m_hotKeys.errors().end() ? QString()
                                                 : error->second,
             settings.*HotKeyController::setting(action).isEnabled, isRecording});
    }
    m_rows.setRecords(rows);
}

} // namespace velmo
