#include "VelmoSystem/Linux/Desktop/CanberraPlayer.h"

#include "VelmoCore/Foundation/Log.h"

#include <canberra.h>

namespace velmo {

namespace {

/// Names of the freedesktop Sound Naming Specification.
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

ca_context *open()
{
    ca_context *context = nullptr;
    if (!succeeds(ca_context_create(&context)))
        return nullptr;
    ca_context_change_props(context, CA_PROP_APPLICATION_NAME, "Orvane", CA_PROP_APPLICATION_ID,
                            "app.orvane.Orvane", nullptr);
    return context;
}

} // namespace

void CanberraPlayer::Close::operator()(ca_context *context) const
{
    ca_context_destroy(context);
}

CanberraPlayer::CanberraPlayer()
{
    m_thread.setMaxThreadCount(1);
}

void CanberraPlayer::play(SystemSound sound)
{
    m_thread.start([this, event = eventOf(sound)] {
        if (!m_context)
            m_context.reset(open());
        if (m_context)
            succeeds(ca_context_play(m_context.get(), 0, CA_PROP_EVENT_ID, event,
                                     CA_PROP_MEDIA_ROLE, "event", nullptr));
    });
}

} // namespace velmo
