#pragma once

#include "VelmoCore/Foundation/LocalizedError.h"

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

namespace velmo {

/// Cuts what a mail server sends into its responses: a line each, with the literals that it
/// announces (RFC 3501, section 4.3) and the lines behind these. It holds one response at a time,
/// and bounds it.
class IMAPReader {
public:
    static constexpr qsizetype longestLine = 1024 * 1024; ///< bytes outside literals
    static constexpr qsizetype longestResponse = 32 * 1024 * 1024;

    /// The server sends more than it may.
    class TooLong : public LocalizedError {
    public:
        using LocalizedError::LocalizedError;
    };

    void append(QByteArrayView bytes) { m_buffer.append(bytes); }
    /// The next whole response with its line ends; nothing before more bytes have come. Throws
    /// `TooLong`, also about what is only announced.
    std::optional<QByteArray> next();

private:
    QByteArray m_buffer;
    qsizetype m_line = 0;     ///< where the response's last line begins
    qsizetype m_searched = 0; ///< no line ends between that and here
};

} // namespace velmo
