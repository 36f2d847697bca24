#include "VelmoSystem/Linux/Desktop/XdgAutostart.h"

namespace velmo {

XdgAutostart::XdgAutostart(const QString &configFolder)
    : m_path(configFolder + QStringLiteral("/autostart/app.orvane.Orvane.desktop"))
{
}

QString XdgAutostart::standardFolder()
{
    return {};
}

LoginItem::Status XdgAutostart::status() const
{
    return Status::disabled;
}

void XdgAutostart::setEnabled(bool)
{
}

} // namespace velmo
