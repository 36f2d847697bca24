#pragma once

#include "VelmoSystem/Ports/SoundPlayer.h"

namespace velmo {

/// `SoundPlayer` with the freedesktop sound theme of the desktop.
class CanberraPlayer : public SoundPlayer {
public:
    void play(SystemSound sound) override;
};

} // namespace velmo
