#include "VelmoCore/Mail/FoldedText.h"

#include "VelmoCore/Foundation/CodePoint.h"
#include "VelmoCore/Foundation/Text.h"

#include <algorithm>
#include <array>

namespace velmo {
namespace {

/// Without marks, letters that have case, and those that are made plain.
bool foldsToItself(char32_t character)
{
    const bool isHangulSyllable = character >= 0xAC00 && character < 0xD7A4;
    const auto category = QChar::category(character);
    return isHangulSyllable ||
           (category > QChar::Mark_Enclosing &&
            (category < QChar::Letter_Uppercase || category > QChar::Letter_Modifier) &&
            QChar::decompositionTag(character) == QChar::NoDecomposition);
}

QString foldedAlone(char32_t character)
{
    return Text::folded(QString::fromUcs4(&character, 1));
}

/// What the characters of one UTF-16 unit fold to, which takes most of the time: made on first use.
class FoldTable {
public:
    // No characters themselves, and the last two units.
    static constexpr char16_t nothing = 0xFFFE; ///< as of a mark
    static constexpr char16_t several = 0xFFFF; ///< units, as of a ligature

    FoldTable()
    {
        for (char32_t character = 0; character < nothing; ++character)
            m_units[character] = foldedUnit(character);
    }

    /// The unit that a character folds to; `several` also for one that isn't in the table.
    char16_t operator[](char32_t character) const
    {
        return character < nothing ? m_units[character] : several;
    }

private:
    static char16_t foldedUnit(char32_t character)
    {
        if (foldsToItself(character))
            return char16_t(character);
        const QString folded = foldedAlone(character);
        return folded.isEmpty() ? nothing : folded.size() > 1 ? several : folded.front().unicode();
    }

    std::array<char16_t, nothing> m_units;
};

} // namespace

FoldedText::FoldedText(const QString &text) : original(text)
{
    static const FoldTable table;
    folded.reserve(std::size_t(text.size()));
    origins.reserve(std::size_t(text.size()));
    qsizetype length = 0;
    for (qsizetype at = 0; at < text.size(); at += length) {
        const auto add = [&](QChar unit) {
            folded.push_back(unit.unicode());
            origins.push_back(at);
        };
        const char32_t character = codePointAt(text, at);
        length = lengthOf(character);
        const char16_t unit = table[character];
        if (unit < FoldTable::nothing)
            add(unit);
        else if (unit == FoldTable::several && foldsToItself(character))
            std::for_each_n(text.begin() + at, length, add);
        else if (unit == FoldTable::several)
            std::ranges::for_each(foldedAlone(character), add);
    }
}

} // namespace velmo
