#include "VelmoSystem/Linux/X11/X11FrontApplication.h"

#include "VelmoSystem/Linux/Desktop/ApplicationIdentifiers.h"

#include <QFileInfo>

#include <algorithm>

namespace velmo {

namespace {

constexpr std::uint32_t longestText = 256; ///< in words of 4 bytes

} // namespace

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
    const QStringList all = names(active.front());
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

QStringList X11FrontApplication::names(xcb_window_t window) const
{
    QStringList all;
    for (const char *property :
         {"_KDE_NET_WM_DESKTOP_FILE", "_BAMF_DESKTOP_FILE", "_GTK_APPLICATION_ID"}) {
        for (const QString &text : texts(window, property))
            all.append(ApplicationIdentifiers::withoutSuffix(QFileInfo(text).fileName()));
    }
    // First the program's name, then the class, which is fit to be read.
    const QStringList classes = texts(window, "WM_CLASS");
    for (const QString &name : classes)
        all.append(name.toLower());
    all += classes;
    all.removeAll(QString());
    return all;
}

QStringList X11FrontApplication::texts(xcb_window_t window, const QByteArray &property) const
{
    auto *server = m_connection.handle();
    const X11Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(server,
                               xcb_get_property(server, false, window, m_connection.atom(property),
                                                XCB_ATOM_ANY, 0, longestText),
                               nullptr));
    if (!reply || reply->format != 8)
        return {};
    return QString::fromUtf8(static_cast<const char *>(xcb_get_property_value(reply.get())),
                             xcb_get_property_value_length(reply.get()))
        .split(QChar::Null, Qt::SkipEmptyParts);
}

} // namespace velmo
