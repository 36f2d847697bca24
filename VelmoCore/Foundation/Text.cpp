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

/// Passes up to `most` characters, as far as they are told without Unicode's tables: each letter
/// below U+0300, dash or quotation mark is one, unless a mark may follow, as is a CR with its LF.
Passed passSimple(QStringView text, qsizetype most)
{
    const auto isSimple = [&](qsizetype at) {
        const char16_t unit = at < text.size() ? text[at].unicode() : u'\0';
        return unit < 0x0300 || (unit >= 0x2010 && unit < 0x2028);
    };
    Passed passed{0, 0};
    for (auto &[count, at] = passed;
         count < most && at < text.size() && isSimple(at) && isSimple(at + 1); ++count)
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

QString prefix(const QString &text, qsizetype count)
{
    const Passed simple = passSimple(text, count);
    const QStringView rest = QStringView(text).sliced(simple.end);
    if (simple.count >= count || rest.isEmpty())
        return text.first(simple.end);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, rest.data(), rest.size());
    qsizetype end = 0;
    for (qsizetype left = count - simple.count; left > 0 && end < rest.size(); --left)
        end = finder.toNextBoundary();
    return text.first(simple.end + end);
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
