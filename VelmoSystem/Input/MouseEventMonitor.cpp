#include "VelmoSystem/Input/MouseEventMonitor.h"

#include "VelmoCore/Foundation/LocalizedError.h"
#include "VelmoCore/Foundation/Log.h"

namespace velmo {

namespace {

MouseEventMonitor::Event eventOf(const Pointer::Sample &sample)
{
    switch (sample.change) {
    case Pointer::Change::pressed:
        return MouseEventMonitor::Down{sample.position, sample.window};
    case Pointer::Change::released:
        return MouseEventMonitor::Up{sample.position};
    case Pointer::Change::moved:
        break;
    }
    if (sample.isButtonDown)
        return MouseEventMonitor::Dragged{sample.position};
    return MouseEventMonitor::Moved{sample.position};
}

} // namespace

MouseEventMonitor::MouseEventMonitor(Pointer &pointer) : m_pointer(pointer)
{
}

void MouseEventMonitor::start(std::function<void(const Event &)> handler)
{
    try {
        m_pointer.start([handler = std::move(handler)](const Pointer::Sample &sample) {
            handler(eventOf(sample));
        });
    } catch (const LocalizedError &error) {
        qCWarning(Log::input, "Ponteiro não observado: %s", qUtf8Printable(error.description()));
    }
}

} // namespace velmo
