#pragma once

#include "VelmoCore/Settings/SettingsStore.h"

#include <QQmlPropertyMap>
#include <QtQml/qqmlregistration.h>

namespace velmo {

/// The settings for QML: a property a key, read and written under the key's own name, and one for
/// each field of the pomodoro. Numbers and
/// lists of texts are what they are, durations seconds, enumerations their case names. What is
/// written goes to the store, what changes there shows here; a value that doesn't fit its key
/// leaves it as it was.
class SettingsModel : public QQmlPropertyMap {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the settings window")

public:
    explicit SettingsModel(SettingsStore &store);

    /// `{minimum, maximum, step}` of a numeric key.
    Q_INVOKABLE QVariantMap bounds(const QString &key) const;

protected:
    QVariant updateValue(const QString &key, const QVariant &input) override;

private:
    void show(const AppSettings &settings);

    SettingsStore &m_store;
    SettingsStore::Observation m_observer;
};

} // namespace velmo
