#include "tests/support/XServer.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>

#include <xcb/shape.h>
#include <xcb/xcb_keysyms.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <sys/prctl.h>
#include <unistd.h>

namespace velmo {

namespace {

template <class Answer>
std::unique_ptr<Answer, void (*)(void *)> owned(Answer *answer)
{
    return {answer, std::free};
}

void dieWithParent()
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
}

void stop(QProcess &process)
{
    process.terminate();
    if (!process.waitForFinished(5'000))
        process.kill();
    process.waitForFinished(5'000);
}

} // namespace

XServer::XServer(const QByteArray &screen, const QProcessEnvironment &environment)
    : m_environment(environment.inheritsFromParent() ? QProcessEnvironment::systemEnvironment()
                                                     : environment)
{
    m_server.setChildProcessModifier(dieWithParent);
    m_server.setStandardErrorFile(QProcess::nullDevice());
    m_server.start(u"Xvfb"_qs,
                   {u"-displayfd"_qs, u"1"_qs, u"-screen"_qs, u"0"_qs, QString::fromLatin1(screen),
                    u"-nolisten"_qs, u"tcp"_qs, u"-noreset"_qs});
    if (!m_server.waitForReadyRead(20'000))
        qFatal("Xvfb doesn't start");
    m_display = ':' + m_server.readAllStandardOutput().trimmed();
    m_environment.insert(u"DISPLAY"_qs, QString::fromLatin1(m_display));
    m_client = xcb_connect(m_display.constData(), nullptr);
    if (xcb_connection_has_error(m_client))
        qFatal("Can't connect to Xvfb on %s", m_display.constData());
    m_screen = xcb_setup_roots_iterator(xcb_get_setup(m_client)).data;
}

XServer::~XServer()
{
    for (auto &program : m_programs)
        stop(*program);
    xcb_disconnect(m_client);
    stop(m_server);
}

QProcess &XServer::run(const QString &program, const QStringList &arguments)
{
    auto process = std::make_unique<QProcess>();
    process->setProcessEnvironment(m_environment);
    process->setChildProcessModifier(dieWithParent);
    process->setStandardErrorFile(QProcess::nullDevice());
    process->setStandardOutputFile(QProcess::nullDevice());
    process->start(program, arguments);
    if (!process->waitForStarted(10'000))
        qFatal("%s doesn't start", qPrintable(program));
    return *m_programs.emplace_back(std::move(process));
}

QProcess &XServer::runWindowManager(const QString &program, const QStringList &arguments)
{
    // What an earlier manager left on the root window says nothing.
    const xcb_atom_t selection = atom("WM_S0");
    QProcess &manager = run(program, arguments);
    const bool manages = eventually([&] {
        const auto owner = owned(xcb_get_selection_owner_reply(
            m_client, xcb_get_selection_owner(m_client, selection), nullptr));
        return owner->owner != XCB_NONE && !property(root(), "_NET_SUPPORTING_WM_CHECK").empty() &&
               !property(root(), "_NET_NUMBER_OF_DESKTOPS").empty();
    });
    // It may still be about to look at the windows there are; and openbox leaves what came while it
    // started until something else happens.
    const xcb_window_t probe = makeWindow({0, 0, 50, 50});
    const auto isListed = [&] {
        tellManager(root(), "_NET_CURRENT_DESKTOP", {0});
        const auto clients = property(root(), "_NET_CLIENT_LIST");
        return std::ranges::find(clients, probe) != clients.end();
    };
    const bool lists = manages && eventually(isListed);
    xcb_destroy_window(m_client, probe);
    if (!lists || !eventually([&] { return !isListed(); }))
        qFatal("%s doesn't manage windows", qPrintable(program));
    return manager;
}

void XServer::movePointer(int x, int y)
{
    fake(XCB_MOTION_NOTIFY, 0, x, y);
}

void XServer::setButton(int button, bool isDown)
{
    fake(isDown ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, std::uint8_t(button));
}

void XServer::click(int x, int y)
{
    movePointer(x, y);
    setButton(1, true);
    setButton(1, false);
}

void XServer::setKey(xcb_keysym_t keysym, bool isDown)
{
    fake(isDown ? XCB_KEY_PRESS : XCB_KEY_RELEASE, keycode(keysym));
}

void XServer::typeKey(xcb_keysym_t keysym, const std::vector<xcb_keysym_t> &modifiers)
{
    typeKeyAt(keycode(keysym), modifiers);
}

void XServer::typeKeyAt(xcb_keycode_t place, const std::vector<xcb_keysym_t> &modifiers)
{
    for (const xcb_keysym_t modifier : modifiers)
        setKey(modifier, true);
    fake(XCB_KEY_PRESS, place);
    fake(XCB_KEY_RELEASE, place);
    for (const xcb_keysym_t modifier : modifiers)
        setKey(modifier, false);
}

void XServer::setLayout(const QString &layout)
{
    QProcess &setter = run(u"setxkbmap"_qs, {layout});
    if (!setter.waitForFinished(10'000) || setter.exitCode() != 0)
        qFatal("The keyboard's layout can't be set");
}

xcb_keycode_t XServer::keycode(xcb_keysym_t keysym) const
{
    auto *symbols = xcb_key_symbols_alloc(m_client);
    const auto codes = owned(xcb_key_symbols_get_keycode(symbols, keysym));
    xcb_key_symbols_free(symbols);
    if (!codes)
        qFatal("No key has the symbol 0x%x", keysym);
    return codes.get()[0];
}

xcb_atom_t XServer::atom(const QByteArray &name) const
{
    const auto cookie = xcb_intern_atom(m_client, false, std::uint16_t(name.size()), name.data());
    return owned(xcb_intern_atom_reply(m_client, cookie, nullptr))->atom;
}

std::vector<std::uint32_t> XServer::property(xcb_window_t window, const QByteArray &name) const
{
    const auto cookie =
        xcb_get_property(m_client, false, window, atom(name), XCB_ATOM_ANY, 0, 4'096);
    const auto reply = owned(xcb_get_property_reply(m_client, cookie, nullptr));
    if (!reply || reply->format != 32)
        return {};
    const auto *values = static_cast<const std::uint32_t *>(xcb_get_property_value(reply.get()));
    return {values, values + reply->value_len};
}

void XServer::setProperty(xcb_window_t window, const QByteArray &name, xcb_atom_t type,
                          const std::vector<std::uint32_t> &values)
{
    xcb_change_property(m_client, XCB_PROP_MODE_REPLACE, window, atom(name), type, 32,
                        std::uint32_t(values.size()), values.data());
    xcb_flush(m_client);
}

void XServer::tellManager(xcb_window_t window, const QByteArray &message,
                          const std::vector<std::uint32_t> &values)
{
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = atom(message);
    std::ranges::copy(values, event.data.data32);
    xcb_send_event(m_client, false, root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&event));
    xcb_flush(m_client);
}

xcb_window_t XServer::makeWindow(const QRect &frame, bool isManaged)
{
    const xcb_window_t window = xcb_generate_id(m_client);
    const std::uint32_t values[] = {isManaged ? 0U : 1U, XCB_EVENT_MASK_KEY_PRESS |
                                                             XCB_EVENT_MASK_BUTTON_PRESS |
                                                             XCB_EVENT_MASK_PROPERTY_CHANGE};
    xcb_create_window(m_client, XCB_COPY_FROM_PARENT, window, root(), std::int16_t(frame.x()),
                      std::int16_t(frame.y()), std::uint16_t(frame.width()),
                      std::uint16_t(frame.height()), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    // Flags USPosition and USSize: window managers otherwise choose a place themselves.
    setProperty(window, "WM_NORMAL_HINTS", XCB_ATOM_WM_SIZE_HINTS,
                {3, std::uint32_t(frame.x()), std::uint32_t(frame.y()),
                 std::uint32_t(frame.width()), std::uint32_t(frame.height()), 0, 0, 0, 0, 0, 0, 0,
                 0, 0, 0, 0, 0, 0});
    // Flag InputHint: it takes the keyboard when the window manager gives it.
    setProperty(window, "WM_HINTS", XCB_ATOM_WM_HINTS, {1, 1, 0, 0, 0, 0, 0, 0, 0});
    // Without decorations.
    setProperty(window, "_MOTIF_WM_HINTS", atom("_MOTIF_WM_HINTS"), {2, 0, 0, 0, 0});
    xcb_map_window(m_client, window);
    xcb_flush(m_client);
    return window;
}

xcb_window_t XServer::focusedWindow() const
{
    return owned(xcb_get_input_focus_reply(m_client, xcb_get_input_focus(m_client), nullptr))
        ->focus;
}

std::vector<std::uint32_t> XServer::pixels(const QRect &area) const
{
    const auto cookie = xcb_get_image(
        m_client, XCB_IMAGE_FORMAT_Z_PIXMAP, root(), std::int16_t(area.x()), std::int16_t(area.y()),
        std::uint16_t(area.width()), std::uint16_t(area.height()), ~0U);
    const auto image = owned(xcb_get_image_reply(m_client, cookie, nullptr));
    if (!image)
        qFatal("The screen can't be read");
    std::vector<std::uint32_t> pixels(std::size_t(area.width()) * std::size_t(area.height()));
    std::memcpy(pixels.data(), xcb_get_image_data(image.get()),
                pixels.size() * sizeof pixels.front());
    for (std::uint32_t &pixel : pixels)
        pixel &= 0xffffff;
    return pixels;
}

int XServer::takeEvents(std::uint8_t responseType)
{
    while (const auto event = owned(xcb_poll_for_event(m_client)))
        m_events.push_back(event->response_type & 0x7f);
    return int(std::erase(m_events, responseType));
}

void XServer::fake(std::uint8_t type, std::uint8_t detail, int x, int y)
{
    xcb_test_fake_input(m_client, type, detail, XCB_CURRENT_TIME, root(), std::int16_t(x),
                        std::int16_t(y), 0);
    focusedWindow(); // its answer says that the server has acted
}

bool eventually(const std::function<bool()> &condition, std::chrono::milliseconds patience)
{
    QTimer tick; // wakes the loop for conditions that no event of ours reports
    tick.start(5);
    const QDeadlineTimer deadline(patience);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

} // namespace velmo
