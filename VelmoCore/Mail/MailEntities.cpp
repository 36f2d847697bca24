#include "VelmoCore/Mail/MailMatching.h"
#include "VelmoCore/Mail/MailParser.h"
#include "VelmoCore/Mail/MailReading.h"

#include <QTextBoundaryFinder>

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

/// Text of one character or none.
struct Scalar {
    std::array<QChar, 2> units;
    qsizetype size;

    operator QStringView() const { return {units.data(), size}; }
};

/// What an entity, from its "&" to its ";", stands for.
std::optional<Scalar> meaning(QStringView token)
{
    for (const Entity &entity : entities) {
        if (entity.token.size() == token.size() && hasName(token, 0, entity.token))
            return Scalar{{entity.text.isEmpty() ? QChar() : entity.text.front()},
                          entity.text.size()};
    }
    if (!token.startsWith(u"&#"))
        return std::nullopt;
    const bool isHex = token.size() > 2 && lowered(token[2]) == u'x';
    const QStringView digits = token.sliced(isHex ? 3 : 2).chopped(1);
    const auto isDigit = [&](QChar c) {
        const char16_t lower = lowered(c);
        return (lower >= u'0' && lower <= u'9') || (isHex && lower >= u'a' && lower <= u'f');
    };
    bool isNumber = std::all_of(digits.begin(), digits.end(), isDigit);
    const uint scalar = isNumber ? digits.toUInt(&isNumber, isHex ? 16 : 10) : 0;
    if (!isNumber || scalar > QChar::LastValidCodePoint || QChar::isSurrogate(scalar))
        return std::nullopt;
    if (QChar::requiresSurrogates(scalar))
        return Scalar{{QChar::highSurrogate(scalar), QChar::lowSurrogate(scalar)}, 2};
    return Scalar{{QChar(char16_t(scalar))}, 1};
}

constexpr int longestEntity = 12; ///< characters

/// Whether this is a character of its own, whatever such characters stand beside it.
bool isSimple(QStringView text, qsizetype at)
{
    constexpr char16_t firstMark = 0x0300;
    return at >= text.size() || text[at].unicode() < firstMark;
}

/// The ";" that ends the entity at an "&", or -1.
qsizetype entityEnd(QStringView text, qsizetype mark)
{
    qsizetype at = mark;
    for (int count = 0; count < longestEntity && at < text.size(); ++count) {
        if (!isSimple(text, at + 1))
            break;
        if (text[at] == u';')
            return at;
        at += text[at] == u'\r' && isAt(text, at + 1, u'\n') ? 2 : 1;
        if (count + 1 == longestEntity || at == text.size())
            return -1;
    }
    // Characters may be of any length: read more until the last one is seen to the end.
    for (qsizetype length = 64;; length *= 2) {
        const QStringView near = text.sliced(mark).first(std::min(length, text.size() - mark));
        const bool isAll = mark + near.size() == text.size();
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, near.data(), near.size());
        qsizetype start = 0;
        for (int count = 0; count < longestEntity; ++count) {
            const qsizetype end = finder.toNextBoundary();
            if (end == near.size() && !isAll)
                break;
            const bool isUnit = end - start == 1;
            if (isUnit && near[start] == u';')
                return mark + start;
            if (end == near.size() || (count == 0 && !isUnit) || count + 1 == longestEntity)
                return -1;
            start = end;
        }
    }
}

} // namespace

void resolveEntities(QString &text)
{
    Rewriting rewriting(text);
    qsizetype next = 0;
    for (qsizetype mark = find(text, 0, u'&'); mark >= 0; mark = find(text, next, u'&')) {
        const qsizetype end = entityEnd(text, mark);
        next = end < 0 ? mark + 1 : end + 1;
        if (end < 0)
            continue;
        if (const auto scalar = meaning(QStringView(text).sliced(mark, next - mark)))
            rewriting.replace(mark, next, *scalar);
    }
    rewriting.finish();
}

QString decodeEntities(QString text)
{
    if (find(text, 0, u'&') >= 0)
        resolveEntities(text);
    return text;
}

} // namespace velmo::MailParser
