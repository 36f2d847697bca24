#include "VelmoCore/Files/ArchiveListing.h"

#include <cstdint>
#include <cstdlib>

/// Whatever a tool prints, an entry has a name that stood on a line of its own.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace velmo;

    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    for (const ArchiveEntry &entry : ArchiveListing::parseTarListing(text)) {
        if (entry.path.contains(u'\n') || !text.contains(u' ' + entry.path))
            std::abort();
    }
    return 0;
}
