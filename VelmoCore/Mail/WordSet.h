#pragma once

#include <QStringView>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <span>
#include <string_view>

namespace velmo {

/// Words that are looked for together in one pass: up to 32 of ASCII, three letters or longer.
class WordSet {
public:
    /// `words` must outlive the set.
    explicit constexpr WordSet(std::span<const std::u16string_view> words) : m_words(words)
    {
        for (std::size_t word = 0; word < words.size(); ++word) {
            for (std::size_t letter = 0; letter < openingLength; ++letter)
                m_openings[letter][words[word].at(letter)] |= 1U << word;
        }
    }

    bool isIn(QStringView text) const
    {
        bool found = false;
        scan(text, [&](qsizetype) { return !(found = true); });
        return found;
    }

    /// Calls `visit` with the start of every occurrence, in the order of the text, until it gives
    /// false. Occurrences of one word don't overlap each other.
    template <typename Visitor>
    void scan(QStringView text, Visitor visit) const
    {
        std::array<qsizetype, 32> ends{};
        for (qsizetype at = 0; at + openingLength <= text.size(); ++at) {
            std::uint32_t left = opening(0, text[at]);
            if (left)
                left &= opening(1, text[at + 1]) & opening(2, text[at + 2]);
            for (; left; left &= left - 1) {
                const int index = std::countr_zero(left);
                const QStringView word = m_words[std::size_t(index)];
                if (at < ends[std::size_t(index)] || !text.sliced(at).startsWith(word))
                    continue;
                ends[std::size_t(index)] = at + word.size();
                if (!visit(at))
                    return;
            }
        }
    }

private:
    static constexpr int openingLength = 3;
    static constexpr char16_t noLetter = 0x7F;

    std::uint32_t opening(std::size_t letter, QChar character) const
    {
        return m_openings[letter][std::min(character.unicode(), noLetter)];
    }

    std::span<const std::u16string_view> m_words;
    /// For each letter that a word can open with, a bit for every word that has it there.
    std::array<std::array<std::uint32_t, noLetter + 1>, openingLength> m_openings{};
};

} // namespace velmo
