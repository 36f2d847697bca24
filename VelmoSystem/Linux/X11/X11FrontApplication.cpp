#include "VelmoSystem/Linux/X11/X11FrontApplication.h"

#include "VelmoSystem/Linux/Desktop/ApplicationIdentifiers.h"
#include "VelmoSystem/Linux/X11/X11WindowTexts.h"

#include <algorithm>

namespace velmo {

X11FrontApplication::X11FrontApplication(X11Connection &connection,
                                         const Applications &applications)
    : m_connection(connection), m_applications(applications)
{
}

std::optional<FrontApplication::Info> X11FrontApplication::current() const
{
    const auto active =
        m_connection.property(m_connection.root(), m_connection.atom("_NET_ACTIVE_WINDOW"));
    if (active.empty() || active.front() == XCB_NONE)
        return std::nullopt;
    const QStringList all = X11WindowNames(m_connection, active.front()).read();
    if (all.isEmpty())
        return std::nullopt;

    const auto entry = entryOf(all);
    Info info = entry ? Info{entry->name, entry->bundleID} : Info{all.last(), all.first()};
    for (const QString &name : all) {
        if (const QString known = ApplicationIdentifiers::known(name); !known.isEmpty()) {
            info.bundleID = known;
            break;
        }
    }
    return info;
}

std::optional<Applications::Application> X11FrontApplication::entryOf(const QStringList &all) const
{
    for (const QString &name : all) {
        if (auto entry = m_applications.find(name + QStringLiteral(".desktop")))
            return entry;
    }
    for (auto &entry : m_applications.installed()) {
        if (!entry.windowClass.isEmpty() && all.contains(entry.windowClass, Qt::CaseInsensitive))
            return entry;
    }
    return std::nullopt;
}

} // namespace velmo
