#include "VelmoSystem/Linux/X11/X11WindowTexts.h"

#include "VelmoSystem/Linux/Desktop/ApplicationIdentifiers.h"

#include <QFileInfo>

namespace velmo {

namespace {

constexpr std::uint32_t longestText = 256; ///< in words of 4 bytes

} // namespace

X11WindowText::X11WindowText(const X11Connection &connection, xcb_window_t window,
                             xcb_atom_t property)
    : m_server(connection.handle()),
      m_request(xcb_get_property(m_server, false, window, property, XCB_ATOM_ANY, 0, longestText))
{
}

QStringList X11WindowText::read() const
{
    const X11Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(m_server, m_request, nullptr));
    if (!reply || reply->format != 8)
        return {};
    return QString::fromUtf8(static_cast<const char *>(xcb_get_property_value(reply.get())),
                             xcb_get_property_value_length(reply.get()))
        .split(QChar::Null, Qt::SkipEmptyParts);
}

X11WindowNames::X11WindowNames(const X11Connection &connection, xcb_window_t window)
    : m_classes(connection, window, XCB_ATOM_WM_CLASS)
{
    for (const char *property :
         {"_KDE_NET_WM_DESKTOP_FILE", "_BAMF_DESKTOP_FILE", "_GTK_APPLICATION_ID"})
        m_entries.emplace_back(connection, window, connection.atom(property));
}

QStringList X11WindowNames::read() const
{
    QStringList all;
    for (const X11WindowText &entry : m_entries) {
        for (const QString &text : entry.read())
            all.append(ApplicationIdentifiers::withoutSuffix(QFileInfo(text).fileName()));
    }
    // First the program's name, then the class, which is fit to be read.
    const QStringList classes = m_classes.read();
    for (const QString &name : classes)
        all.append(name.toLower());
    all += classes;
    all.removeAll(QString());
    return all;
}

} // namespace velmo
