#include "VelmoCore/Clipboard/ClipboardClassifier.h"
#include "VelmoCore/Clipboard/UriList.h"

#include <cstdint>
#include <cstdlib>

namespace velmo {
namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

/// Whatever stands on the pasteboard, an item of it comes back from a file as it went in.
void checkItem(const std::optional<ClipItem> &item)
{
    require(!item || Json::decode<ClipItem>(Json::encode(*item)) == *item);
}

void checkColor(const ClipItem &item)
{
    const auto color = ClipboardClassifier::hexColor(*item.text);
    require((item.kind == ClipKind::color) == color.has_value());
    if (color) {
        for (const double part : {color->red, color->green, color->blue, color->alpha})
            require(part >= 0 && part <= 1);
    }
}

} // namespace
} // namespace velmo

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace velmo;

    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    const auto files = UriList::files(bytes);
    require(UriList::files(UriList::text(files)) == files);
    checkItem(ClipItems::fromFiles(files, {}, Date{}));
    // The second reading has lone surrogates.
    for (const QString &text :
         {QString::fromUtf8(bytes),
          QString(reinterpret_cast<const QChar *>(bytes.constData()), bytes.size() / 2)}) {
        const auto item = ClipItems::fromText(text, {}, Date{});
        checkItem(item);
        if (item)
            checkColor(*item);
    }
    return 0;
}
