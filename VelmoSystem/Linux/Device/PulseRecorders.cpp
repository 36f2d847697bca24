#include "VelmoSystem/Linux/Device/PulseRecorders.h"

#include "VelmoCore/Foundation/LocalizedError.h"
#include "VelmoSystem/Linux/Desktop/Browsers.h"

#include <QLibrary>

#include <memory>
#include <optional>
#include <pulse/pulseaudio.h>
#include <set>

namespace velmo {

namespace {

/// libpulse, loaded by the first call that shows: few runs see one. It stays loaded.
struct Pulse {
    Pulse()
    {
        QLibrary library(QStringLiteral("pulse"), 0);
        const auto find = [&](auto &function, const char *name) {
            function = reinterpret_cast<std::decay_t<decltype(function)>>(library.resolve(name));
            if (!function)
                throw LocalizedError(library.errorString());
        };
        find(strerror, "pa_strerror");
        find(mainloopNew, "pa_mainloop_new");
        find(mainloopFree, "pa_mainloop_free");
        find(mainloopGetApi, "pa_mainloop_get_api");
        find(mainloopIterate, "pa_mainloop_iterate");
        find(mainloopWakeup, "pa_mainloop_wakeup");
        find(contextNew, "pa_context_new");
        find(contextUnref, "pa_context_unref");
        find(contextConnect, "pa_context_connect");
        find(contextDisconnect, "pa_context_disconnect");
        find(contextGetState, "pa_context_get_state");
        find(contextErrno, "pa_context_errno");
        find(contextSetSubscribeCallback, "pa_context_set_subscribe_callback");
        find(contextSubscribe, "pa_context_subscribe");
        find(getSources, "pa_context_get_source_info_list");
        find(getSourceOutputs, "pa_context_get_source_output_info_list");
        find(operationUnref, "pa_operation_unref");
        find(proplistGets, "pa_proplist_gets");
    }

    decltype(&pa_strerror) strerror = nullptr;
    decltype(&pa_mainloop_new) mainloopNew = nullptr;
    decltype(&pa_mainloop_free) mainloopFree = nullptr;
    decltype(&pa_mainloop_get_api) mainloopGetApi = nullptr;
    decltype(&pa_mainloop_iterate) mainloopIterate = nullptr;
    decltype(&pa_mainloop_wakeup) mainloopWakeup = nullptr;
    decltype(&pa_context_new) contextNew = nullptr;
    decltype(&pa_context_unref) contextUnref = nullptr;
    decltype(&pa_context_connect) contextConnect = nullptr;
    decltype(&pa_context_disconnect) contextDisconnect = nullptr;
    decltype(&pa_context_get_state) contextGetState = nullptr;
    decltype(&pa_context_errno) contextErrno = nullptr;
    decltype(&pa_context_set_subscribe_callback) contextSetSubscribeCallback = nullptr;
    decltype(&pa_context_subscribe) contextSubscribe = nullptr;
    decltype(&pa_context_get_source_info_list) getSources = nullptr;
    decltype(&pa_context_get_source_output_info_list) getSourceOutputs = nullptr;
    decltype(&pa_operation_unref) operationUnref = nullptr;
    decltype(&pa_proplist_gets) proplistGets = nullptr;
};

class Connection {
public:
    explicit Connection(const std::function<void(const QStringList &)> &changed)
        : m_changed(changed), m_loop(m_pulse.mainloopNew(), m_pulse.mainloopFree),
          m_context(m_pulse.contextNew(m_pulse.mainloopGetApi(m_loop.get()), "Orvane"),
                    m_pulse.contextUnref)
    {
        m_pulse.contextSetSubscribeCallback(
            m_context.get(),
            [](pa_context *, pa_subscription_event_type_t, std::uint32_t, void *self) {
                static_cast<Connection *>(self)->m_isStale = true;
            },
            this);
        if (m_pulse.contextConnect(m_context.get(), nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0)
            fail();
    }
    ~Connection() { m_pulse.contextDisconnect(m_context.get()); }
    Q_DISABLE_COPY_MOVE(Connection)

    void run(const std::stop_token &stop)
    {
        const std::stop_callback wake(stop, [this] { m_pulse.mainloopWakeup(m_loop.get()); });
        while (!stop.stop_requested()) {
            if (m_pulse.mainloopIterate(m_loop.get(), 1, nullptr) < 0)
                fail();
            const pa_context_state_t state = m_pulse.contextGetState(m_context.get());
            if (!PA_CONTEXT_IS_GOOD(state))
                fail();
            if (state == PA_CONTEXT_READY)
                ask();
        }
    }

private:
    template <class Object>
    using Owned = std::unique_ptr<Object, void (*)(Object *)>;

    [[noreturn]] void fail() const
    {
        throw LocalizedError(
            QString::fromUtf8(m_pulse.strerror(m_pulse.contextErrno(m_context.get()))));
    }

    void start(pa_operation *operation) const
    {
        if (!operation)
            fail();
        m_pulse.operationUnref(operation);
    }

    /// One question at a time: what changes meanwhile asks for the next round.
    void ask()
    {
        if (!std::exchange(m_isSubscribed, true))
            start(m_pulse.contextSubscribe(m_context.get(), PA_SUBSCRIPTION_MASK_SOURCE_OUTPUT,
                                           nullptr, nullptr));
        if (m_step == Step::users)
            tell();
        if (m_step == Step::rest && std::exchange(m_isStale, false))
            askSources();
        if (m_step == Step::sources)
            askOutputs();
    }

    void askSources()
    {
        m_step = Step::question;
        m_monitors.clear();
        start(m_pulse.getSources(
            m_context.get(),
            [](pa_context *, const pa_source_info *source, int end, void *self) {
                auto *connection = static_cast<Connection *>(self);
                if (end)
                    connection->m_step = Step::sources;
                else if (source->monitor_of_sink != PA_INVALID_INDEX)
                    connection->m_monitors.insert(source->index);
            },
            this));
    }

    void askOutputs()
    {
        m_step = Step::question;
        m_users.clear();
        start(m_pulse.getSourceOutputs(
            m_context.get(),
            [](pa_context *, const pa_source_output_info *output, int end, void *self) {
                auto *connection = static_cast<Connection *>(self);
                if (end)
                    connection->m_step = Step::users;
                else
                    connection->add(*output);
            },
            this));
    }

    void add(const pa_source_output_info &output)
    {
        if (output.corked || m_monitors.contains(output.source))
            return;
        QString program;
        for (const char *key : {PA_PROP_APPLICATION_PROCESS_BINARY, PA_PROP_APPLICATION_NAME}) {
            const auto name = QString::fromUtf8(m_pulse.proplistGets(output.proplist, key));
            if (const QString browser = Browsers::known(name); !browser.isEmpty()) {
                m_users.insert(browser);
                return;
            }
            if (program.isEmpty())
                program = name;
        }
        if (!program.isEmpty()) // one without a client is the server's own, as a loopback
            m_users.insert(program);
    }

    void tell()
    {
        m_step = Step::rest;
        const QStringList users(m_users.begin(), m_users.end());
        if (m_told != users)
            m_changed(m_told.emplace(users));
    }

    /// What is known of the present round.
    enum class Step { rest, question, sources, users };

    const Pulse m_pulse;
    const std::function<void(const QStringList &)> &m_changed;
    const Owned<pa_mainloop> m_loop;
    const Owned<pa_context> m_context;
    bool m_isSubscribed = false;
    bool m_isStale = true;
    Step m_step = Step::rest;
    std::set<std::uint32_t> m_monitors;
    std::set<QString> m_users;
    std::optional<QStringList> m_told;
};

} // namespace

void PulseRecorders::follow(const std::stop_token &stop,
                            const std::function<void(const QStringList &)> &changed)
{
    Connection(changed).run(stop);
}

} // namespace velmo
