#include "VelmoCore/Mail/LoginCodePattern.h"

#include "VelmoCore/Foundation/CodePoint.h"

namespace velmo::LoginCodePattern {
namespace {

/// Asks Qt, which takes its time, only in the blocks that have digits.
bool isDigit(char32_t character)
{
    if (character < 0x0660)
        return character >= U'0' && character <= U'9';
    const bool isInBlock =
        character < 0x1C5A || (character >= 0xA620 && character < 0xABFA) || character >= 0xFF10;
    return isInBlock && QChar::isDigit(character);
}

bool isCodeCharacter(char32_t character)
{
    return (character >= U'A' && character <= U'Z') || (character >= U'0' && character <= U'9');
}

bool touchesEitherSide(char32_t character)
{
    return QChar::isLetterOrNumber(character) || character == U'/' || character == U'-' ||
           character == U'@' || character == U'_';
}

bool mayStandAhead(char32_t character)
{
    return !touchesEitherSide(character) && character != U'#' && character != U'.' &&
           character != U',';
}

bool mayStandBehind(QStringView text, qsizetype at)
{
    const char32_t character = codePointAt(text, at);
    if (character == U'.' || character == U',')
        return !isDigit(codePointAt(text, at + 1));
    return !touchesEitherSide(character);
}

struct Run {
    qsizetype end;
    int count;
};

Run runOf(bool (*belongs)(char32_t), QStringView text, qsizetype start, int most)
{
    Run run{start, 0};
    for (; run.count < most; ++run.count) {
        const char32_t character = codePointAt(text, run.end);
        if (!belongs(character))
            break;
        run.end += lengthOf(character);
    }
    return run;
}

/// Where the match that starts here ends, or `start`. Nothing is tried twice: a repetition that
/// ends earlier than it could has one of its own characters behind it, where none may stand.
qsizetype matchEnd(QStringView text, qsizetype start)
{
    const Run triple = runOf(isDigit, text, start, 3);
    const char32_t joint = codePointAt(text, triple.end);
    if (triple.count == 3 && (joint == U' ' || joint == U'-')) {
        const Run second = runOf(isDigit, text, triple.end + 1, 3);
        if (second.count == 3 && mayStandBehind(text, second.end))
            return second.end;
    }
    const Run digits = runOf(isDigit, text, start, 9);
    if (digits.count >= 4 && digits.count <= 8 && mayStandBehind(text, digits.end))
        return digits.end;
    const Run first = runOf(isCodeCharacter, text, start, 6);
    if (first.count >= 3 && first.count <= 5 && codePointAt(text, first.end) == U'-') {
        const Run second = runOf(isCodeCharacter, text, first.end + 1, 6);
        if (second.count >= 3 && second.count <= 5 && mayStandBehind(text, second.end))
            return second.end;
    }
    return start;
}

} // namespace

std::vector<QStringView> matches(QStringView text)
{
    std::vector<QStringView> found;
    char32_t previous = 0;
    for (qsizetype at = 0; at < text.size();) {
        const char32_t character = codePointAt(text, at);
        if ((isCodeCharacter(character) || isDigit(character)) && mayStandAhead(previous)) {
            const qsizetype end = matchEnd(text, at);
            if (end > at) {
                found.push_back(text.sliced(at, end - at));
                at = end;
                previous = U'0';
                continue;
            }
        }
        previous = character;
        at += lengthOf(character);
    }
    return found;
}

} // namespace velmo::LoginCodePattern
