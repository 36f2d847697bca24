#include "VelmoSystem/Linux/X11/X11Pasteboard.h"

#include "VelmoCore/Clipboard/UriList.h"
#include "VelmoCore/Foundation/Log.h"

#include <QStringDecoder>

#include <xcb/xfixes.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace velmo {

namespace {

constexpr qsizetype mostTypes = 512;
/// The owners' names for text, the surest first.
constexpr std::array textTargets{
    "UTF8_STRING", "text/plain;charset=utf-8", "text/plain;charset=UTF-8", "text/plain", "STRING",
    "TEXT"};
constexpr const char *uriListTarget = "text/uri-list";
constexpr const char *fileManagersTarget = "x-special/gnome-copied-files";

QString pathsOf(const std::vector<QUrl> &files)
{
    QStringList paths;
    for (const QUrl &file : files)
        paths.append(file.toLocalFile());
    return paths.join(u'\n');
}

class Offers {
public:
    explicit Offers(const X11Connection &connection) : m_connection(connection) {}

    void add(const QByteArray &target, const QByteArray &bytes, const QByteArray &type = {})
    {
        m_offers.push_back(
            {m_connection.atom(target), m_connection.atom(type.isEmpty() ? target : type), bytes});
    }
    void addText(const QString &text)
    {
        for (const QByteArrayView target : textTargets) {
            if (target == "STRING")
                add(target.toByteArray(), text.toLatin1());
            else
                add(target.toByteArray(), text.toUtf8(), target == "TEXT" ? "UTF8_STRING" : "");
        }
    }
    void addFiles(const std::vector<QUrl> &files)
    {
        const QByteArray list = UriList::text(files);
        add(uriListTarget, list);
        QByteArray copied = "copy\n" + list;
        copied.replace("\r\n", "\n").chop(1);
        add(fileManagersTarget, copied);
    }
    std::vector<X11SelectionSource::Offer> take() { return std::move(m_offers); }

private:
    const X11Connection &m_connection;
    std::vector<X11SelectionSource::Offer> m_offers;
};

} // namespace

X11Pasteboard::X11Pasteboard(X11Connection &connection, Scheduler &scheduler,
                             const QByteArray &selection, Owners owners)
    : m_connection(connection), m_scheduler(scheduler), m_selection(connection.atom(selection)),
      m_source(connection, scheduler, m_selection)
{
    if (owners == Owners::followed)
        followOwners();
}

void X11Pasteboard::followOwners()
{
    auto *server = m_connection.handle();
    const auto *fixes = xcb_get_extension_data(server, &xcb_xfixes_id);
    if (!fixes || !fixes->present) {
        qCWarning(Log::app, "O servidor X não avisa quando algo é copiado (falta XFixes).");
        return;
    }
    const X11Reply<xcb_xfixes_query_version_reply_t> version(xcb_xfixes_query_version_reply(
        server, xcb_xfixes_query_version(server, 5, 0), nullptr)); // the server insists on it
    m_ownerChanges =
        m_connection.subscribe(fixes->first_event + XCB_XFIXES_SELECTION_NOTIFY,
                               [this](const xcb_generic_event_t &event) { ownerChanged(event); });
    xcb_xfixes_select_selection_input(server, m_source.window(), m_selection,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
}

void X11Pasteboard::ownerChanged(const xcb_generic_event_t &event)
{
    const auto &change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t &>(event);
    if (change.selection != m_selection)
        return;
    m_time = change.selection_timestamp;
    m_targets.clear();
    endAll();
    const bool isOwn = change.owner == m_source.window();
    if (isOwn)
        m_source.setTime(m_time); // `write` has counted it
    else if (change.owner != XCB_NONE &&
             change.subtype == XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER)
        ++m_changeCount;
    else
        return;
    Q_EMIT changed();
}

void X11Pasteboard::readTypes(Answer<std::vector<QString>> answer)
{
    start(m_connection.atom("TARGETS"), mostTypes * qsizetype(sizeof(xcb_atom_t)),
          [this, answer = std::move(answer)](const auto &result) {
              if (!result) {
                  answer(std::nullopt);
                  return;
              }
              std::vector<xcb_atom_t> atoms(std::size_t(result->bytes.size()) / sizeof(xcb_atom_t));
              std::memcpy(atoms.data(), result->bytes.constData(),
                          atoms.size() * sizeof(xcb_atom_t));
              answer(typeNames(atoms));
          });
}

void X11Pasteboard::read(const QString &type, qsizetype limit, Answer<Data> answer)
{
    start(target(type), limit, [this, type, answer = std::move(answer)](const auto &result) {
        if (result)
            answer(Data{type == textType ? utf8(*result) : result->bytes, result->isWhole});
        else
            answer(std::nullopt);
    });
}

void X11Pasteboard::write(const Contents &contents)
{
    Offers offers(m_connection);
    if (!contents.files.empty())
        offers.addFiles(contents.files);
    if (!contents.png.isEmpty())
        offers.add("image/png", contents.png);
    if (contents.text || !contents.files.empty())
        offers.addText(contents.text.value_or(pathsOf(contents.files)));
    if (contents.isSecret)
        offers.add("x-kde-passwordManagerHint", "secret");
    m_source.own(offers.take());
    ++m_changeCount;
}

std::vector<QString> X11Pasteboard::startOffer(xcb_timestamp_t time,
                                               std::span<const xcb_atom_t> types)
{
    endAll();
    m_time = time;
    return typeNames(types.first(std::min(types.size(), std::size_t(mostTypes))));
}

void X11Pasteboard::start(xcb_atom_t target, qsizetype limit, X11SelectionRead::Finished finished)
{
    const std::uint64_t id = m_nextReading++;
    m_readings[id] = {std::make_unique<X11SelectionRead>(
                          m_connection, m_scheduler,
                          X11SelectionRead::Request{m_selection, target, m_time, limit},
                          [this, id](const auto &result) { end(id, result); }),
                      std::move(finished)};
}

void X11Pasteboard::end(std::uint64_t id, const std::optional<X11SelectionRead::Result> &result)
{
    const auto reading = m_readings.extract(id);
    if (reading)
        reading.mapped().finished(result);
}

// A late answer would be of a content that has gone.
void X11Pasteboard::endAll()
{
    for (const auto &[id, reading] : std::exchange(m_readings, {}))
        reading.finished(std::nullopt);
}

std::vector<QString> X11Pasteboard::typeNames(std::span<const xcb_atom_t> atoms)
{
    auto *server = m_connection.handle();
    std::vector<xcb_get_atom_name_cookie_t> requests;
    requests.reserve(atoms.size());
    for (const xcb_atom_t atom : atoms)
        requests.push_back(xcb_get_atom_name(server, atom));
    m_targets.clear();
    for (const auto request : requests) {
        const X11Reply<xcb_get_atom_name_reply_t> name(
            xcb_get_atom_name_reply(server, request, nullptr));
        if (name)
            m_targets.push_back(QString::fromLatin1(xcb_get_atom_name_name(name.get()),
                                                    xcb_get_atom_name_name_length(name.get())));
    }
    std::vector<QString> types = m_targets;
    if (std::ranges::find(types, textType) == types.end() &&
        std::ranges::any_of(textTargets, [&](const char *text) {
            return std::ranges::find(types, QLatin1String(text)) != types.end();
        }))
        types.push_back(textType.toString());
    return types;
}

xcb_atom_t X11Pasteboard::target(const QString &type) const
{
    if (type != textType)
        return m_connection.atom(type.toLatin1());
    const auto best = std::ranges::find_if(textTargets, [&](const char *text) {
        return std::ranges::find(m_targets, QLatin1String(text)) != m_targets.end();
    });
    return m_connection.atom(best == textTargets.end() ? textTargets.front() : *best);
}

QByteArray X11Pasteboard::utf8(const X11SelectionRead::Result &result) const
{
    QByteArray bytes = result.bytes;
    while (bytes.endsWith('\0')) // programs in C send the end of their string
        bytes.chop(1);
    QStringDecoder decode(QStringDecoder::Utf8);
    const QString text = decode(bytes); // without a character that was cut at the end
    const bool isLatin1 =
        result.type == XCB_ATOM_STRING ||
        (decode.hasError() && result.type == m_connection.atom("text/plain")); // no charset given
    return (isLatin1 ? QString::fromLatin1(bytes) : text).toUtf8();
}

} // namespace velmo
