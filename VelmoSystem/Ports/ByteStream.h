#pragma once

#include "VelmoSystem/Mail/IMAPError.h"

#include <QByteArray>
#include <QCoroTask>

namespace velmo {

/// A connection to a server. What it does is awaited, one reading at a time; a failure is an
/// `IMAPError`.
class ByteStream {
public:
    virtual ~ByteStream() = default;

    /// Once, before all else.
    virtual QCoro::Task<> open() = 0;
    /// At least one byte and at most `most`. Throws `closed` at the end.
    virtual QCoro::Task<QByteArray> receive(qsizetype most) = 0;
    /// Returns at once. A failure shows in what is received next.
    virtual void send(const QByteArray &bytes) = 0;
    /// Ends the connection: what is awaited throws `error` at once, as all does from now on.
    virtual void cancel(const IMAPError &error) = 0;
};

} // namespace velmo
