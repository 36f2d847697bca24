#pragma once

#include "VelmoSystem/Ports/SoundPlayer.h"

#include <QtGlobal>

#include <memory>

namespace velmo {

/// `SoundPlayer` with the freedesktop sound theme of the desktop. The sound server may let one
/// wait: it is spoken to on a thread of its own.
class CanberraPlayer : public SoundPlayer {
public:
    CanberraPlayer();
    /// Waits for the sounds a moment at most.
    ~CanberraPlayer() override;
    Q_DISABLE_COPY_MOVE(CanberraPlayer)

    void play(SystemSound sound) override;

private:
    struct Voice;

    std::unique_ptr<Voice> m_voice;
};

} // namespace velmo
