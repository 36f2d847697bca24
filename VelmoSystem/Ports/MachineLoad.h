#pragma once

#include <QtGlobal>

#include <optional>

namespace velmo {

/// How busy the machine is. Reads at each call, without waiting; nothing where it can't be read.
class MachineLoad {
public:
    /// Bytes; what is used can't be had without taking it from somebody.
    struct Memory {
        qint64 used = 0;
        qint64 total = 0;

        bool operator==(const Memory &) const = default;
    };
    /// Bytes of the file system that holds the user's home.
    struct Storage {
        qint64 available = 0;
        qint64 total = 0;

        bool operator==(const Storage &) const = default;
    };

    virtual ~MachineLoad() = default;

    virtual std::optional<Memory> memory() const = 0;
    /// Runnable work of the last minute for each processor: 1 is all of them busy.
    virtual std::optional<double> processor() const = 0;
    virtual std::optional<Storage> storage() const = 0;
};

} // namespace velmo
