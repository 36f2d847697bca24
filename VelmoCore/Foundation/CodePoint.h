#pragma once

#include <QStringView>

namespace velmo {

/// The character at a place. An unpaired surrogate stands for itself; the text's end is U+0000.
inline char32_t codePointAt(QStringView text, qsizetype at)
{
    if (at >= text.size())
        return 0;
    const QChar unit = text[at];
    if (unit.isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate())
        return QChar::surrogateToUcs4(unit, text[at + 1]);
    return unit.unicode();
}

/// In UTF-16 units.
inline qsizetype lengthOf(char32_t character)
{
    return QChar::requiresSurrogates(character) ? 2 : 1;
}

} // namespace velmo
