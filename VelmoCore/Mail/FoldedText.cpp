#include "VelmoCore/Mail/FoldedText.h"

#include "VelmoCore/Foundation/Text.h"
#include "VelmoCore/Mail/CodePoint.h"

#include <array>

namespace velmo {
namespace {

std::u16string foldedAlone(char32_t character)
{
    return Text::folded(QString::fromUcs4(&character, 1)).toStdU16String();
}

/// What the characters up to the end of Cyrillic fold to, made on first use.
class FoldTable {
public:
    static constexpr char32_t end = 0x530;

    FoldTable()
    {
        for (char32_t character = 0; character < end; ++character) {
            m_units += foldedAlone(character);
            m_ends[character + 1] = m_units.size();
        }
    }

    std::u16string_view operator[](char32_t character) const
    {
        const std::size_t start = m_ends[character];
        return std::u16string_view(m_units).substr(start, m_ends[character + 1] - start);
    }

private:
    std::u16string m_units;
    std::array<std::size_t, end + 1> m_ends{};
};

/// Without marks, letters that have case, and those that are made plain.
bool foldsToItself(char32_t character)
{
    const auto category = QChar::category(character);
    return category > QChar::Mark_Enclosing &&
           (category < QChar::Letter_Uppercase || category > QChar::Letter_Modifier) &&
           QChar::decompositionTag(character) == QChar::NoDecomposition;
}

char16_t foldedAscii(char32_t character)
{
    return char16_t(character >= U'A' && character <= U'Z' ? character + 0x20 : character);
}

} // namespace

FoldedText::FoldedText(const QString &text) : original(text)
{
    static const FoldTable table;
    folded.reserve(std::size_t(text.size()));
    origins.reserve(std::size_t(text.size()));
    const QStringView view = text;
    for (qsizetype at = 0; at < view.size();) {
        const char32_t character = codePointAt(view, at);
        const qsizetype length = lengthOf(character);
        if (character < 0x80)
            folded.push_back(foldedAscii(character));
        else if (character < FoldTable::end)
            folded += table[character];
        else if (foldsToItself(character))
            folded += std::u16string_view(view.sliced(at, length).utf16(), std::size_t(length));
        else
            folded += foldedAlone(character);
        origins.resize(folded.size(), at);
        at += length;
    }
}

} // namespace velmo
