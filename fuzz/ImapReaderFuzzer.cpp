#include "VelmoCore/Mail/IMAP/IMAPReader.h"

#include <cstdint>
#include <cstdlib>
#include <vector>

namespace velmo {
namespace {

/// The responses of `bytes`, which come in pieces of that size.
std::vector<QByteArray> responses(const QByteArray &bytes, qsizetype piece)
{
    std::vector<QByteArray> found;
    IMAPReader reader;
    for (qsizetype i = 0; i < bytes.size(); i += piece) {
        reader.append(bytes.mid(i, piece));
        try {
            while (auto response = reader.next())
                found.push_back(*response);
        } catch (const IMAPReader::TooLong &) {
            break;
        }
    }
    return found;
}

} // namespace
} // namespace velmo

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    const auto whole = velmo::responses(bytes, bytes.size() + 1);
    for (const qsizetype piece : {1, 7}) {
        if (velmo::responses(bytes, piece) != whole)
            std::abort();
    }
    QByteArray joined;
    for (const QByteArray &response : whole)
        joined += response;
    if (!bytes.startsWith(joined))
        std::abort();
    return 0;
}
