#include "VelmoCore/Files/PageRanges.h"

#include <cstdint>
#include <cstdlib>
#include <set>

/// Whatever the user writes, a page is one that exists and comes once, and the pages written out
/// one by one are the same pages. The first two bytes are how many pages there are.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace velmo;

    if (size < 2)
        return 0;
    const int pageCount = data[0] * 256 + data[1];
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char *>(data + 2), qsizetype(size - 2));
    std::vector<int> pages;
    try {
        pages = PageRanges::parse(text, pageCount);
    } catch (const PageRanges::ParseError &) {
        return 0;
    }
    QString written;
    for (const int page : pages) {
        if (page < 0 || page >= pageCount)
            std::abort();
        written += QString::number(page + 1) + u',';
    }
    const bool isEachOnce = std::set(pages.begin(), pages.end()).size() == pages.size();
    if (pages.empty() || !isEachOnce || PageRanges::parse(written, pageCount) != pages)
        std::abort();
    return 0;
}
