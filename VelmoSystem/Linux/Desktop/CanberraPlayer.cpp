#include "VelmoSystem/Linux/Desktop/CanberraPlayer.h"

namespace velmo {

void CanberraPlayer::play(SystemSound)
{
}

} // namespace velmo
