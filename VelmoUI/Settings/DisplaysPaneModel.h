#pragma once

#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoSystem/Ports/Displays.h"

#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace velmo {

/// On which screens the panel shows.
class DisplaysPaneModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the settings window")
    /// The choices, each connected screen among them, and a chosen one that isn't connected.
    Q_PROPERTY(QStringList choices READ choices NOTIFY changed)
    Q_PROPERTY(QStringList details READ details NOTIFY changed)
    Q_PROPERTY(int current READ current NOTIFY changed)

public:
    /// Both outlive this object.
    DisplaysPaneModel(SettingsStore &settings, Displays &displays);

    QStringList choices() const;
    QStringList details() const;
    int current() const;

    Q_INVOKABLE void choose(int index);

Q_SIGNALS:
    void changed();

private:
    struct Choice {
        DisplayMode mode;
        QString title;
        QString detail;
    };

    std::vector<Choice> all() const;

    SettingsStore &m_settings;
    Displays &m_displays;
};

} // namespace velmo
