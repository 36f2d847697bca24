#include "VelmoCore/Files/ArchiveListing.h"

#include <cstdint>
#include <cstdlib>

/// Whatever a tool prints, an entry has a path that stood there.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace velmo;

    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    for (const ArchiveEntry &entry : ArchiveListing::parseTechnicalListing(text)) {
        if (!text.contains(QStringLiteral("Path = ") + entry.path))
            std::abort();
    }
    return 0;
}
