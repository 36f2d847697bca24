#pragma once

#include "VelmoCore/Storage/AtomicFile.h"

#include <cerrno>
#include <unistd.h>

namespace velmo {

/// An open file of the kernel's, closed with it. Throws `FileError` about `path` for a failed open.
class Descriptor {
public:
    Descriptor(int value, const QString &path) : m_value(value)
    {
        if (value < 0)
            throw FileError(path, errno);
    }
    ~Descriptor() { ::close(m_value); }
    Q_DISABLE_COPY_MOVE(Descriptor)

    operator int() const { return m_value; }

private:
    int m_value;
};

/// A system call's result once no signal interrupts it.
template <class Call>
auto retried(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

} // namespace velmo
