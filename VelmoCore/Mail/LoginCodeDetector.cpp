#include "VelmoCore/Mail/LoginCodeDetector.h"

#include "VelmoCore/Foundation/Text.h"
#include "VelmoCore/Mail/FoldedText.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <map>
#include <string>

namespace velmo::LoginCodeDetector {
namespace {

constexpr qsizetype readCharacters = 3000;
constexpr qsizetype farthest = 220; ///< UTF-16 units between a code in the body and its word
constexpr qsizetype priceReach = 4; ///< UTF-16 units ahead of a number in which a currency counts

/// Words in ASCII by their first letter.
using Words = std::array<std::vector<std::u16string>, 128>;

Words words(std::initializer_list<std::u16string> list)
{
    Words words;
    for (const std::u16string &word : list)
        words[word.front()].push_back(word);
    return words;
}

Words withoutSpaces(Words words)
{
    for (auto &startingAlike : words) {
        for (std::u16string &word : startingAlike)
            std::erase(word, u' ');
    }
    return words;
}

/// The end of many another host: it counts only where a label of a host name can start.
constexpr std::u16string_view hostOfX = u"x.com/";

struct Vocabulary {
    Words code =
        words({u"code", u"codigo", u"verification", u"verificacao", u"otp", u"one-time",
               u"one time", u"passcode", u" pin ", u" pin:", u"2fa", u"two-factor", u"two factor",
               u"senha temporaria", u"autenticacao", u"authentication", u"token de acesso"});
    Words signInSubject =
        words({u"sign in", u"sign-in", u"log in", u"login", u"magic link", u"entrar", u"acessar",
               u"acesse", u"verify", u"verifique", u"confirm", u"confirme", u"link de acesso",
               u"link para entrar", u"continue to", u"activate", u"ative"});
    Words signInBody = words({u"magic link", u"sign-in link", u"sign in link", u"login link",
                              u"link de acesso", u"link para entrar"});
    Words linkStop = words({u"unsubscribe", u"descadastr", u"privacy", u"privacidade", u"terms",
                            u"termos", u"help", u"ajuda", u"support", u"suporte", u"preferences",
                            u"preferencias", u"settings", u"facebook.com", u"twitter.com",
                            u"instagram.com", u"linkedin.com", std::u16string(hostOfX)});
    Words link = words({u"sign in", u"sign-in", u"signin", u"log in", u"login", u"log-in", u"magic",
                        u"entrar", u"acessar", u"verify", u"verificar", u"confirm", u"confirmar",
                        u"continue to", u"continuar", u"auth", u"token", u"activate", u"ativar"});
    Words address = withoutSpaces(link); ///< as a web address writes the words of a link
};

const Vocabulary &vocabulary()
{
    static const Vocabulary vocabulary;
    return vocabulary;
}

struct Found {
    qsizetype place;
    std::u16string_view word;
};

/// The next word in a folded text.
std::optional<Found> find(const Words &words, QStringView text, qsizetype from = 0)
{
    const std::u16string_view units(text.utf16(), std::size_t(text.size()));
    for (auto at = std::size_t(from); at < units.size(); ++at) {
        if (units[at] >= words.size())
            continue;
        for (const std::u16string &word : words[units[at]]) {
            if (units.substr(at).starts_with(word))
                return Found{qsizetype(at), word};
        }
    }
    return std::nullopt;
}

/// With U+FFFD for surrogates that stand alone: a pattern finds nothing in a text with these.
QString valid(const QString &text)
{
    return text.isValidUtf16() ? text : QString::fromUtf8(text.toUtf8());
}

const QRegularExpression &codePattern()
{
    static const QRegularExpression pattern(
        QStringLiteral(R"((?<![\p{L}\p{N}#/\-.,@_])(\d{3}[ \-]\d{3}|\d{4,8}|)"
                       R"([A-Z0-9]{3,5}-[A-Z0-9]{3,5})(?![\p{L}\p{N}/\-@_]|[.,]\d))"),
        QRegularExpression::UseUnicodePropertiesOption);
    return pattern;
}

/// The code as it is typed, unless it is a price, a year or a pair of words.
std::optional<QString> accept(QString match, QStringView before)
{
    if (before.contains(u'$') || before.contains(u'€') || before.contains(u'£'))
        return {};
    const QList<uint> characters = match.toUcs4();
    const auto isLetter = [](char32_t character) { return character >= U'A' && character <= U'Z'; };
    const auto isNumber = [](char32_t character) { return QChar::isNumber(character); };
    if (std::ranges::any_of(characters, isLetter)) {
        if (!std::ranges::any_of(characters, isNumber))
            return {};
        return match;
    }
    if (characters.size() == 4) {
        int year = 0;
        for (const char32_t character : characters)
            year = year * 10 + QChar::digitValue(character);
        if (year >= 1900 && year <= 2099)
            return {};
    }
    return match.remove(u' ').remove(u'-');
}

/// Where code words stand in the original text, in order. Occurrences of one word don't overlap.
std::vector<qsizetype> wordPositions(const FoldedText &text)
{
    const Words &words = vocabulary().code;
    std::vector<qsizetype> positions;
    std::map<std::u16string_view, qsizetype> ends;
    for (auto found = find(words, text.folded); found;
         found = find(words, text.folded, found->place + 1)) {
        qsizetype &end = ends[found->word];
        if (found->place < end)
            continue;
        end = found->place + qsizetype(found->word.size());
        positions.push_back(text.origins[std::size_t(found->place)]);
    }
    return positions;
}

/// `positions` is in order and not empty.
qsizetype distanceToNearest(const std::vector<qsizetype> &positions, qsizetype start)
{
    const auto behind = std::ranges::lower_bound(positions, start);
    if (behind == positions.begin())
        return *behind - start;
    const qsizetype ahead = start - *std::prev(behind);
    return behind == positions.end() ? ahead : std::min(ahead, *behind - start);
}

/// The code nearest to one of the positions, the earlier one of two, up to `reach` UTF-16 units
/// away.
std::optional<QString> bestCode(const QString &text, const std::vector<qsizetype> &positions,
                                qsizetype reach)
{
    if (positions.empty())
        return {};
    std::optional<QString> best;
    qsizetype bestDistance = 0;
    qsizetype from = std::max<qsizetype>(0, positions.front() - reach);
    if (from < text.size() && text[from].isLowSurrogate())
        --from; // matches begin at whole characters
    for (auto matches = codePattern().globalMatch(text, from); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        const qsizetype start = match.capturedStart();
        if (start > positions.back() + reach)
            break;
        const qsizetype distance = distanceToNearest(positions, start);
        if (distance > reach || (best && distance >= bestDistance))
            continue;
        const qsizetype ahead = std::min(start, priceReach);
        if (auto code = accept(match.captured(), QStringView(text).sliced(start - ahead, ahead))) {
            best = std::move(code);
            bestDistance = distance;
        }
    }
    return best;
}

bool isStopped(QStringView text)
{
    const Words &words = vocabulary().linkStop;
    for (auto found = find(words, text); found; found = find(words, text, found->place + 1)) {
        const QStringView ahead = text.first(found->place);
        const bool isRestOfLabel =
            !ahead.isEmpty() && (ahead.back().isLetterOrNumber() || ahead.back() == u'-');
        if (!isRestOfLabel || found->word != hostOfX)
            return true;
    }
    return false;
}

std::optional<QUrl> signInLink(const std::vector<MailLink> &links)
{
    std::optional<QUrl> best;
    int bestScore = 0;
    for (const MailLink &link : links) {
        const FoldedText label(link.text);
        const QString address = link.url.toString(QUrl::FullyEncoded).toLower();
        const int score = (find(vocabulary().link, label.folded) ? 2 : 0) +
                          (find(vocabulary().address, address) ? 1 : 0);
        if (score > bestScore && !isStopped(label.folded) && !isStopped(address)) {
            bestScore = score;
            best = link.url;
        }
    }
    return best;
}

} // namespace

Detection detect(const QString &subject, const QString &text, const std::vector<MailLink> &links)
{
    const FoldedText heading(valid(subject));
    const FoldedText body(valid(Text::prefix(text, readCharacters)));
    const std::vector<qsizetype> inHeading = wordPositions(heading);
    std::vector<qsizetype> inBody = wordPositions(body);
    if (inHeading.empty() && inBody.empty()) {
        if (find(vocabulary().signInSubject, heading.folded) ||
            find(vocabulary().signInBody, body.folded))
            return {{}, signInLink(links)};
        return {};
    }
    auto code = bestCode(heading.original, inHeading, subject.size()); // wherever it is
    if (!code) {
        if (!inHeading.empty())
            inBody.insert(inBody.begin(), 0); // the code follows on the subject
        code = bestCode(body.original, inBody, farthest);
    }
    return {code, signInLink(links)};
}

} // namespace velmo::LoginCodeDetector
