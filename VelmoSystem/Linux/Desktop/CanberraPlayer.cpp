#include "VelmoSystem/Linux/Desktop/CanberraPlayer.h"

#include "VelmoCore/Foundation/Log.h"

#include <QLibrary>
#include <QThreadPool>

#include <canberra.h>
#include <optional>

namespace velmo {

namespace {

/// Names as freedesktop's sound naming gives them.
const char *eventOf(SystemSound sound)
{
    switch (sound) {
    case SystemSound::tink:
        return "message-new-instant";
    case SystemSound::glass:
        return "complete";
    }
    Q_UNREACHABLE();
}

/// libcanberra, loaded by the first sound: with what it brings it would take the start a
/// millisecond.
class Canberra {
public:
    Canberra() : m_library(QStringLiteral("canberra"), 0)
    {
        if (!m_library.load()) {
            qCWarning(Log::app).noquote() << "Sem sons:" << m_library.errorString();
            return;
        }
        find(m_strerror, "ca_strerror");
        find(m_destroy, "ca_context_destroy");
        find(m_play, "ca_context_play");
        decltype(&ca_context_create) create = nullptr;
        decltype(&ca_context_change_props) changeProps = nullptr;
        find(create, "ca_context_create");
        find(changeProps, "ca_context_change_props");
        if (succeeds(create(&m_context)))
            changeProps(m_context, CA_PROP_APPLICATION_NAME, "Orvane", CA_PROP_APPLICATION_ID,
                        "app.orvane.Orvane", nullptr);
    }
    ~Canberra()
    {
        if (m_context)
            m_destroy(m_context);
    }
    Q_DISABLE_COPY_MOVE(Canberra)

    void play(const char *event)
    {
        if (m_context)
            succeeds(m_play(m_context, 0, CA_PROP_EVENT_ID, event, CA_PROP_MEDIA_ROLE, "event",
                            nullptr));
    }

private:
    template <class Function>
    void find(Function &function, const char *name)
    {
        function = reinterpret_cast<Function>(m_library.resolve(name));
    }
    bool succeeds(int result) const
    {
        if (result != CA_SUCCESS)
            qCWarning(Log::app, "Som não tocado: %s", m_strerror(result));
        return result == CA_SUCCESS;
    }

    QLibrary m_library;
    decltype(&ca_strerror) m_strerror = nullptr;
    decltype(&ca_context_destroy) m_destroy = nullptr;
    decltype(&ca_context_play) m_play = nullptr;
    ca_context *m_context = nullptr; ///< none without the library or a sound server
};

constexpr int leaveTime = 1'000; // milliseconds

} // namespace

struct CanberraPlayer::Voice {
    std::optional<Canberra> canberra; ///< of the thread
    QThreadPool thread;
};

CanberraPlayer::CanberraPlayer() : m_voice(std::make_unique<Voice>())
{
    m_voice->thread.setMaxThreadCount(1);
}

CanberraPlayer::~CanberraPlayer()
{
    // A thread that a stuck sound server holds ends with the process.
    if (!m_voice->thread.waitForDone(leaveTime))
        static_cast<void>(m_voice.release());
}

void CanberraPlayer::play(SystemSound sound)
{
    m_voice->thread.start([voice = m_voice.get(), event = eventOf(sound)] {
        if (!voice->canberra)
            voice->canberra.emplace();
        voice->canberra->play(event);
    });
}

} // namespace velmo
