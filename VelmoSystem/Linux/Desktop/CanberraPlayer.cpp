#include "VelmoSystem/Linux/Desktop/CanberraPlayer.h"

#include "VelmoCore/Foundation/Log.h"

#include <QThreadPool>

#include <canberra.h>

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

bool succeeds(int result)
{
    if (result != CA_SUCCESS)
        qCWarning(Log::app, "Som não tocado: %s", ca_strerror(result));
    return result == CA_SUCCESS;
}

struct Close {
    void operator()(ca_context *context) const { ca_context_destroy(context); }
};

std::unique_ptr<ca_context, Close> open()
{
    ca_context *context = nullptr;
    if (!succeeds(ca_context_create(&context)))
        return nullptr;
    ca_context_change_props(context, CA_PROP_APPLICATION_NAME, "Orvane", CA_PROP_APPLICATION_ID,
                            "app.orvane.Orvane", nullptr);
    return std::unique_ptr<ca_context, Close>(context);
}

constexpr int leaveTime = 1'000; // milliseconds

} // namespace

struct CanberraPlayer::Voice {
    std::unique_ptr<ca_context, Close> context; ///< of the thread; made by the first sound
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
        if (!voice->context)
            voice->context = open();
        if (voice->context)
            succeeds(ca_context_play(voice->context.get(), 0, CA_PROP_EVENT_ID, event,
                                     CA_PROP_MEDIA_ROLE, "event", nullptr));
    });
}

} // namespace velmo
