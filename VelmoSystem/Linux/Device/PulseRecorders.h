#pragma once

#include <QStringList>

#include <functional>
#include <stop_token>

/// Who records from the microphones of the sound server, be it PulseAudio or PipeWire.
namespace velmo::PulseRecorders {

/// Tells which programs record, sorted, at first and whenever that changes: a browser by its name
/// in `Browsers`. What records the sound that is played is none. Returns when `stop` is requested;
/// sleeps until the server has something to say, so never on the main thread. Throws
/// `LocalizedError` without a sound server, and when it goes.
void follow(const std::stop_token &stop, const std::function<void(const QStringList &)> &changed);

} // namespace velmo::PulseRecorders
