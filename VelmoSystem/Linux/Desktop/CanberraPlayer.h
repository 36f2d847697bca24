#pragma once

#include "VelmoSystem/Ports/SoundPlayer.h"

#include <QThreadPool>

#include <memory>

struct ca_context;

namespace velmo {

/// `SoundPlayer` with the freedesktop sound theme of the desktop. The sound server may let one
/// wait: it is spoken to on a thread of its own.
class CanberraPlayer : public SoundPlayer {
public:
    CanberraPlayer();

    void play(SystemSound sound) override;

private:
    struct Close {
        void operator()(ca_context *context) const;
    };

    std::unique_ptr<ca_context, Close> m_context; ///< of the thread; made by the first sound
    QThreadPool m_thread;
};

} // namespace velmo
