#pragma once

#include "VelmoCore/Mail/IMAP/IMAPValue.h"

#include <QByteArray>

#include <optional>
#include <vector>

namespace velmo {

/// Cuts one response, with its literals in place, into values. It forgives: what isn't closed ends
/// with the response, a literal takes what is there, and a ")" too many is passed over. A list
/// more than `depthLimit` deep, which no server sends, ends the reading.
struct IMAPTokenizer {
    static constexpr int depthLimit = 100;

    explicit IMAPTokenizer(QByteArray data);

    /// All values from `index` on.
    std::vector<IMAPValue> values();

    const QByteArray bytes;
    qsizetype index = 0; ///< of the next byte to read

private:
    std::optional<IMAPValue> next(int depth);
    IMAPValue list(int depth);
    IMAPValue quotedString();
    IMAPValue literal();
    IMAPValue atom();

    bool isAtEnd() const { return index >= bytes.size(); }
    bool isAt(char byte) const { return !isAtEnd() && bytes[index] == byte; }
    void skipSpace();
};

} // namespace velmo
