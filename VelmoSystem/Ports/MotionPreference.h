#pragma once

namespace velmo {

/// Whether the user asked the desktop for less motion.
class MotionPreference {
public:
    virtual ~MotionPreference() = default;

    /// The last answer of the desktop; false until there is one.
    virtual bool shouldReduceMotion() const = 0;
};

} // namespace velmo
