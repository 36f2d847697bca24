#include "VelmoCore/Mail/FoldedText.h"

#include "VelmoCore/Foundation/CodePoint.h"
#include "VelmoCore/Foundation/Text.h"

#include <algorithm>
#include <array>

namespace velmo {
namespace {

std::u16string foldedAlone(char32_t character)
{
    return Text::folded(QString::fromUcs4(&character, 1)).toStdU16String();
}

/// Without marks, letters that have case, and those that are made plain.
bool foldsToItself(char32_t character)
{
    const auto category = QChar::category(character);
    return category > QChar::Mark_Enclosing &&
           (category < QChar::Letter_Uppercase || category > QChar::Letter_Modifier) &&
           QChar::decompositionTag(character) == QChar::NoDecomposition;
}

/// What the characters up to the ideographs, and those behind Hangul, fold to: made on first use.
class FoldTable {
public:
    // No characters themselves, and the last two units.
    static constexpr char16_t nothing = 0xFFFE; ///< as of a mark
    static constexpr char16_t several = 0xFFFF; ///< units, as of a ligature

    FoldTable()
    {
        for (char32_t character = 0; character < gapStart; ++character)
            m_units[character] = foldedUnit(character);
        for (char32_t character = gapEnd; character < end; ++character)
            m_units[character - gapLength] = foldedUnit(character);
    }

    /// The unit that a character folds to; `several` also for what isn't in the table.
    char16_t operator[](char32_t character) const
    {
        if (character < gapStart)
            return m_units[character];
        return character >= gapEnd && character < end ? m_units[character - gapLength] : several;
    }

private:
    static constexpr char32_t gapStart = 0x3400;
    static constexpr char32_t gapEnd = 0xF900;
    static constexpr char32_t end = nothing;
    static constexpr char32_t gapLength = gapEnd - gapStart;

    static char16_t foldedUnit(char32_t character)
    {
        if (foldsToItself(character))
            return char16_t(character);
        const std::u16string folded = foldedAlone(character);
        return folded.empty() ? nothing : folded.size() > 1 ? several : folded.front();
    }

    std::array<char16_t, end - gapLength> m_units;
};

bool isIdeograph(char32_t character)
{
    return character >= 0x3400 && character < 0xA000;
}

bool isHangulSyllable(char32_t character)
{
    return character >= 0xAC00 && character < 0xD7A4;
}

/// Calls `add` with the two or three letters of a syllable, by the arithmetic of the Unicode
/// Standard, 3.12.
template <typename Add>
void addLetters(char32_t syllable, Add add)
{
    constexpr unsigned vowels = 21;
    constexpr unsigned finals = 28; // none is one of them
    const unsigned index = syllable - 0xAC00;
    add(char16_t(0x1100 + index / (vowels * finals)));
    add(char16_t(0x1161 + index / finals % vowels));
    if (index % finals != 0)
        add(char16_t(0x11A7 + index % finals));
}

} // namespace

FoldedText::FoldedText(const QString &text) : original(text)
{
    static const FoldTable table;
    folded.reserve(std::size_t(text.size()));
    origins.reserve(std::size_t(text.size()));
    const QStringView view = text;
    qsizetype length = 0;
    for (qsizetype at = 0; at < view.size(); at += length) {
        const auto add = [&](char16_t unit) {
            folded.push_back(unit);
            origins.push_back(at);
        };
        const char32_t character = codePointAt(view, at);
        length = lengthOf(character);
        const char16_t unit = isIdeograph(character) ? char16_t(character) : table[character];
        if (unit < FoldTable::nothing)
            add(unit);
        else if (isHangulSyllable(character))
            addLetters(character, add);
        else if (unit == FoldTable::several && foldsToItself(character))
            std::for_each_n(view.utf16() + at, length, add);
        else if (unit == FoldTable::several)
            std::ranges::for_each(foldedAlone(character), add);
    }
}

} // namespace velmo
