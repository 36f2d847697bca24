#include "VelmoCore/Clipboard/ClipboardClassifier.h"

#include <algorithm>

namespace velmo {

namespace {

bool isHex(QChar character)
{
    const char16_t unit = character.toLower().unicode();
    return (unit >= u'0' && unit <= u'9') || (unit >= u'a' && unit <= u'f');
}

bool isWebAddress(const QString &text)
{
    // Before QUrl copies a text of any length.
    if (!text.startsWith(u"http", Qt::CaseInsensitive) ||
        std::ranges::any_of(text, [](QChar character) { return character.isSpace(); }))
        return false;
    const QUrl url(text);
    return url.isValid() && (url.scheme() == u"http" || url.scheme() == u"https") &&
           !url.host().isEmpty();
}

} // namespace

ClipKind ClipboardClassifier::kind(const QString &text)
{
    if (hexColor(text))
        return ClipKind::color;
    return isWebAddress(text.trimmed()) ? ClipKind::link : ClipKind::text;
}

std::optional<ClipboardClassifier::Color> ClipboardClassifier::hexColor(const QString &text)
{
    const QStringView trimmed = QStringView(text).trimmed();
    const bool hasSign = trimmed.startsWith(u'#');
    const QStringView digits = trimmed.mid(hasSign ? 1 : 0);
    const qsizetype count = digits.size();
    if (!(count == 6 || (hasSign && (count == 3 || count == 8))) ||
        !std::ranges::all_of(digits, isHex))
        return std::nullopt;
    const qsizetype width = count == 3 ? 1 : 2;
    const auto part = [&](qsizetype index) {
        const int value = digits.mid(index * width, width).toInt(nullptr, 16);
        return (width == 1 ? value * 17 : value) / 255.0;
    };
    return Color{part(0), part(1), part(2), count == 8 ? part(3) : 1};
}

} // namespace velmo
