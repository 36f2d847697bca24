#include "VelmoCore/Foundation/Text.h"
#include "VelmoCore/Mail/MailMatching.h"
#include "VelmoCore/Mail/MailParser.h"

#include <algorithm>
#include <array>

namespace velmo::MailParser {

namespace {

struct Entity {
    QStringView token;
    QStringView text;
};
constexpr std::array<Entity, 22> entities = {
    {{u"&nbsp;", u" "},        {u"&amp;", u"&"},        {u"&lt;", u"<"},
     {u"&gt;", u">"},          {u"&quot;", u"\""},      {u"&#39;", u"'"},
     {u"&apos;", u"'"},        {u"&zwnj;", u""},        {u"&zwj;", u""},
     {u"&shy;", u""},          {u"&ndash;", u"\u2013"}, {u"&mdash;", u"\u2014"},
     {u"&hellip;", u"\u2026"}, {u"&rsquo;", u"\u2019"}, {u"&lsquo;", u"\u2018"},
     {u"&ldquo;", u"\u201c"},  {u"&rdquo;", u"\u201d"}, {u"&copy;", u"\u00a9"},
     {u"&reg;", u"\u00ae"},    {u"&trade;", u"\u2122"}, {u"&bull;", u"\u2022"},
     {u"&middot;", u"\u00b7"}}};

std::optional<QStringView> namedText(QStringView token)
{
    for (const Entity &entity : entities) {
        if (entity.token.size() == token.size() && hasName(token, 0, entity.token))
            return entity.text;
    }
    return std::nullopt;
}

/// The character of "&#65;" or "&#x41;".
std::optional<char32_t> numberedCharacter(QStringView token)
{
    if (!token.startsWith(u"&#"))
        return std::nullopt;
    const bool isHex = lowered(token[2]) == u'x';
    const QStringView digits = token.sliced(isHex ? 3 : 2).chopped(1);
    const auto isDigit = [&](QChar c) {
        const char16_t lower = lowered(c);
        return (lower >= u'0' && lower <= u'9') || (isHex && lower >= u'a' && lower <= u'f');
    };
    bool isNumber = std::all_of(digits.begin(), digits.end(), isDigit);
    const uint character = isNumber ? digits.toUInt(&isNumber, isHex ? 16 : 10) : 0;
    if (!isNumber || character > QChar::LastValidCodePoint || QChar::isSurrogate(character))
        return std::nullopt;
    return character;
}

/// The end of the entity at an "&", or -1: its ";" is a character of its own among the first
/// twelve.
qsizetype entityEnd(QStringView text, qsizetype mark)
{
    constexpr int longestEntity = 12;
    const auto isLatin = [&](qsizetype place) {
        return place >= text.size() || (text[place].unicode() < 0x0300 && text[place] != u'\r');
    };
    qsizetype at = mark;
    for (int count = 0; count < longestEntity && at < text.size(); ++count) {
        const bool isShort = isLatin(at) && isLatin(at + 1);
        const qsizetype length = isShort ? 1 : Text::prefixLength(text.sliced(at), 1);
        if (text[at] == u';' && length == 1)
            return at + 1;
        if (count == 0 && length > 1)
            return -1;
        at += length;
    }
    return -1;
}

} // namespace

QString decodeEntities(const QString &text)
{
    if (!text.contains(u'&'))
        return text;
    Rewriting rewriting(text);
    qsizetype next = 0;
    for (qsizetype mark = text.indexOf(u'&'); mark >= 0; mark = text.indexOf(u'&', next)) {
        const qsizetype end = entityEnd(text, mark);
        next = end < 0 ? mark + 1 : end;
        if (end < 0)
            continue;
        const QStringView token = QStringView(text).sliced(mark, end - mark);
        if (const auto named = namedText(token))
            rewriting.replace({mark, end}, *named);
        else if (const auto character = numberedCharacter(token))
            rewriting.replace({mark, end}, QChar::fromUcs4(*character));
    }
    return rewriting.finish();
}

} // namespace velmo::MailParser
