#include "VelmoCore/Files/ArchiveListing.h"
#include "VelmoCore/Files/NameEncoding.h"

#include <cstdint>
#include <cstdlib>

/// Whatever a tool prints, an entry has a name that stood on a line of its own, and bytes that
/// aren't UTF-8 are of some code page.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace velmo;

    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    for (const ArchiveEntry &entry : ArchiveListing::parseTarListing(text)) {
        if (entry.path.contains(u'\n') || !text.contains(u' ' + entry.path))
            std::abort();
    }
    const QByteArray bytes = ArchiveListing::unescaped(
        QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    const auto page = NameEncoding::guess(bytes);
    if (page.has_value() == bytes.isValidUtf8() ||
        NameEncoding::decoded(bytes, page.value_or(QByteArray())).isEmpty() != bytes.isEmpty())
        std::abort();
    return 0;
}
