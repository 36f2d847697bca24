#include "VelmoCore/Foundation/Text.h"

#include "VelmoCore/Foundation/CodePoint.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace velmo::Text {

namespace {

struct Passed {
    qsizetype count; ///< characters
    qsizetype end;
};

/// A character by itself unless a mark follows, as is a CR without a LF: letters below U+0300,
/// dashes and quotation marks, what Chinese and Japanese are written with, and the end of a text.
bool isSimple(QStringView text, qsizetype at)
{
    const char16_t unit = at < text.size() ? text[at].unicode() : u'\0';
    return unit < 0x0300 || (unit >= 0x2010 && unit < 0x2028) ||
           (unit >= 0x3000 && unit < 0x302A) || (unit >= 0x3030 && unit < 0x3099) ||
           (unit >= 0x309B && unit < 0xA000) || (unit >= 0xFF01 && unit < 0xFF61);
}

/// Passes up to `most` characters, as far as they can be counted without Unicode's tables.
Passed passSimple(QStringView text, qsizetype most)
{
    Passed passed{0, 0};
    for (auto &[count, at] = passed;
         count < most && at < text.size() && isSimple(text, at) && isSimple(text, at + 1); ++count)
        at += text[at] == u'\r' && at + 1 < text.size() && text[at + 1] == u'\n' ? 2 : 1;
    return passed;
}

void removeMarks(QString &text)
{
    QChar *out = text.data();
    const QStringView all = text;
    qsizetype length = 0;
    for (qsizetype at = 0; at < all.size(); at += length) {
        const char32_t character = codePointAt(all, at);
        length = lengthOf(character);
        if (!QChar::isMark(character))
            out = std::copy_n(all.begin() + at, length, out);
    }
    text.truncate(out - text.constData());
}

} // namespace

qsizetype characterCount(QStringView text)
{
    auto [count, end] = passSimple(text, text.size());
    const QStringView rest = text.sliced(end);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, rest.data(), rest.size());
    while (finder.toNextBoundary() > 0)
        ++count;
    return count;
}

qsizetype prefixLength(QStringView text, qsizetype count)
{
    if (text.size() <= count)
        return text.size();
    const Passed simple = passSimple(text, count);
    const qsizetype left = count - simple.count;
    if (left <= 0)
        return simple.end;
    const QStringView rest = text.sliced(simple.end);
    // The finder reads all of its text at once: it gets no more of a long one than is needed.
    for (qsizetype window = left + left / 8 + 16;; window *= 2) {
        const QStringView near = rest.first(std::min(window, rest.size()));
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, near.data(), near.size());
        qsizetype end = 0;
        for (qsizetype found = 0; found < left && end < near.size(); ++found)
            end = finder.toNextBoundary();
        // Whether a character ends is seen at the one behind it, which may be a pair.
        if (end + 2 <= near.size() || near.size() == rest.size())
            return simple.end + end;
    }
}

QString prefix(const QString &text, qsizetype count)
{
    return text.first(prefixLength(text, count));
}

QStringView withoutQuotes(QStringView text)
{
    const bool isQuoted = text.size() >= 2 && text.front() == u'"' && text.back() == u'"';
    return isQuoted ? text.sliced(1, text.size() - 2) : text;
}

QString folded(const QString &text)
{
    // The time of QString::normalized grows with the square of a text's length, hence the pieces.
    // All that it orders among each other, over a piece's end as well, are marks, which go.
    constexpr qsizetype pieceLength = 64;
    QString folded;
    folded.reserve(text.size());
    for (qsizetype start = 0; start < text.size();) {
        qsizetype end = std::min(start + pieceLength, text.size());
        if (text[end - 1].isHighSurrogate())
            end = std::min(end + 1, text.size());
        folded += text.sliced(start, end - start).normalized(QString::NormalizationForm_KD);
        start = end;
    }
    removeMarks(folded);
    // QString folds one character to one; by way of upper case "ß" becomes "ss".
    return folded.toUpper().toCaseFolded();
}

} // namespace velmo::Text
