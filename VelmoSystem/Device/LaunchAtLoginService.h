#pragma once

#include "VelmoSystem/Ports/LoginItem.h"

#include <QObject>
#include <QString>

#include <optional>

namespace velmo {

/// Whether Orvane starts with the session, as the user asked.
class LaunchAtLoginService : public QObject {
    Q_OBJECT

public:
    explicit LaunchAtLoginService(LoginItem &item);

    LoginItem::Status status() const { return m_status; }
    /// Why the last change failed, for the user.
    const std::optional<QString> &lastError() const { return m_lastError; }
    /// What the user reads beside the switch: the error, or that the desktop has it switched off.
    QString message() const;

    void setEnabled(bool isEnabled);
    /// Reads the status again: others may have changed it, which ends an earlier failure.
    void refresh();

Q_SIGNALS:
    void changed();

private:
    void take(LoginItem::Status status, const std::optional<QString> &error);

    LoginItem &m_item;
    LoginItem::Status m_status;
    std::optional<QString> m_lastError;
};

} // namespace velmo
