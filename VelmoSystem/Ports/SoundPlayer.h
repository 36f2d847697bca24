#pragma once

#include <boost/describe.hpp>

namespace velmo {

enum class SystemSound {
    tink,  ///< a message came
    glass, ///< something is complete
};
BOOST_DESCRIBE_ENUM(SystemSound, tink, glass)

/// Plays the desktop's event sounds.
class SoundPlayer {
public:
    virtual ~SoundPlayer() = default;

    /// Returns at once. Silent where the desktop has no such sound; that is logged.
    virtual void play(SystemSound sound) = 0;
};

} // namespace velmo
