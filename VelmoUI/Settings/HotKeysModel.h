#pragma once

#include "VelmoSystem/Input/HotKeyController.h"
#include "VelmoUI/Design/RecordListModel.h"

#include <QtQml/qqmlregistration.h>

class QKeyEvent;

namespace velmo {

/// A global shortcut as the settings show it.
struct HotKeyRow {
    QString id;
    QString title;
    QString keys; ///< "Ctrl+Alt+N"
    QString issue;
    bool isEnabled = false;
    bool isRecording = false;

    bool operator==(const HotKeyRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(HotKeyRow, (), (id, title, keys, issue, isEnabled, isRecording))

/// The global shortcuts whose action exists, and the recording of a new combination. While one is
/// recorded no shortcut is registered.
class HotKeysModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the settings window")
    Q_PROPERTY(QAbstractItemModel *rows READ rows CONSTANT)

public:
    /// `keyboard` knows a key by its place. All three must outlive the model.
    HotKeysModel(SettingsStore &settings, HotKeyController &hotKeys, const HotKeyGrabber &keyboard);
    ~HotKeysModel() override;

    QAbstractItemModel *rows() { return &m_rows; }

    Q_INVOKABLE void setEnabled(const QString &id, bool isEnabled);
    Q_INVOKABLE void startRecording(const QString &id);
    Q_INVOKABLE void stopRecording();

    bool isRecording() const { return m_recording.has_value(); }
    /// A key pressed while recording: Esc and Backspace end it, a combination that can be a global
    /// shortcut and is no other action's becomes the new one, any other says why it can't.
    void record(const QKeyEvent &press);

private:
    void update();

    SettingsStore &m_settings;
    HotKeyController &m_hotKeys;
    const HotKeyGrabber &m_keyboard;
    SettingsStore::Observation m_observer;
    RecordListModel<HotKeyRow> m_rows;
    std::optional<HotKeyAction> m_recording;
    QString m_recordingIssue;
};

} // namespace velmo
