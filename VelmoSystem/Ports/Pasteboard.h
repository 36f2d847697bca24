#pragma once

#include <QString>

namespace velmo {

/// The desktop's clipboard.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;

    virtual void writeText(const QString &text) = 0;
};

} // namespace velmo
