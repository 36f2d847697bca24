#pragma once

#include "VelmoSystem/Ports/LoginItem.h"

#include <QString>

namespace velmo {

/// `LoginItem` as XDG autostart has it: a desktop entry in the user's "autostart".
class XdgAutostart : public LoginItem {
public:
    /// `configFolder` is `$XDG_CONFIG_HOME`.
    explicit XdgAutostart(const QString &configFolder);

    static QString standardFolder();

    Status status() const override;
    void setEnabled(bool isEnabled) override;

private:
    QString m_path;
};

} // namespace velmo
