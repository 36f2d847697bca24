#include "VelmoCore/Mail/LoginCodeDetector.h"

#include "VelmoCore/Foundation/Text.h"
#include "VelmoCore/Mail/FoldedText.h"
#include "VelmoCore/Mail/LoginCodePattern.h"
#include "VelmoCore/Mail/WordSet.h"

#include <algorithm>

namespace velmo::LoginCodeDetector {
namespace {

using namespace std::string_view_literals;

constexpr qsizetype readCharacters = 3000;
constexpr qsizetype farthest = 220; ///< UTF-16 units between a code in the body and its word
constexpr qsizetype priceReach = 4; ///< UTF-16 units ahead of a number in which a currency counts

constexpr std::array codeWordList = {u"code"sv,
                                     u"codigo"sv,
                                     u"verification"sv,
                                     u"verificacao"sv,
                                     u"otp"sv,
                                     u"one-time"sv,
                                     u"one time"sv,
                                     u"passcode"sv,
                                     u" pin "sv,
                                     u" pin:"sv,
                                     u"2fa"sv,
                                     u"two-factor"sv,
                                     u"two factor"sv,
                                     u"senha temporaria"sv,
                                     u"autenticacao"sv,
                                     u"authentication"sv,
                                     u"token de acesso"sv};

constexpr std::array signInSubjectWordList = {
    u"sign in"sv,        u"sign-in"sv,          u"log in"sv,      u"login"sv,
    u"magic link"sv,     u"entrar"sv,           u"acessar"sv,     u"acesse"sv,
    u"verify"sv,         u"verifique"sv,        u"confirm"sv,     u"confirme"sv,
    u"link de acesso"sv, u"link para entrar"sv, u"continue to"sv, u"activate"sv,
    u"ative"sv};

constexpr std::array signInBodyPhraseList = {u"magic link"sv,     u"sign-in link"sv,
                                             u"sign in link"sv,   u"login link"sv,
                                             u"link de acesso"sv, u"link para entrar"sv};

/// The end of many another host: it counts only where a label of a host name can start.
constexpr std::u16string_view hostOfX = u"x.com/";

constexpr std::array linkStopWordList = {
    u"unsubscribe"sv,   u"descadastr"sv,   u"privacy"sv,  u"privacidade"sv,  u"terms"sv,
    u"termos"sv,        u"help"sv,         u"ajuda"sv,    u"support"sv,      u"suporte"sv,
    u"preferences"sv,   u"preferencias"sv, u"settings"sv, u"facebook.com"sv, u"twitter.com"sv,
    u"instagram.com"sv, u"linkedin.com"sv, hostOfX};

constexpr std::array linkWordList = {u"sign in"sv,   u"sign-in"sv,     u"signin"sv,    u"log in"sv,
                                     u"login"sv,     u"log-in"sv,      u"magic"sv,     u"entrar"sv,
                                     u"acessar"sv,   u"verify"sv,      u"verificar"sv, u"confirm"sv,
                                     u"confirmar"sv, u"continue to"sv, u"continuar"sv, u"auth"sv,
                                     u"token"sv,     u"activate"sv,    u"ativar"sv};

/// The link words as an address writes them, without spaces.
constexpr std::array addressWordList = {
    u"sign-in"sv,   u"signin"sv, u"login"sv,     u"log-in"sv,   u"magic"sv,     u"entrar"sv,
    u"acessar"sv,   u"verify"sv, u"verificar"sv, u"confirm"sv,  u"confirmar"sv, u"continueto"sv,
    u"continuar"sv, u"auth"sv,   u"token"sv,     u"activate"sv, u"ativar"sv};

constexpr WordSet codeWords(codeWordList);
constexpr WordSet signInSubjectWords(signInSubjectWordList);
constexpr WordSet signInBodyPhrases(signInBodyPhraseList);
constexpr WordSet linkStopWords(linkStopWordList);
constexpr WordSet linkWords(linkWordList);
constexpr WordSet addressWords(addressWordList);

/// The first 3000 characters, of which a hostile text may make any length; no more of a long text
/// than needed is looked at.
QString opening(const QString &text)
{
    if (text.size() <= readCharacters)
        return text;
    for (qsizetype window = readCharacters + readCharacters / 8; window < text.size();
         window *= 2) {
        QString cut = Text::prefix(text.first(window), readCharacters);
        // Whether a character ends is seen at the one behind it, which may be a pair.
        if (cut.size() + 2 <= window)
            return cut;
    }
    return Text::prefix(text, readCharacters);
}

/// The code as it is typed, unless it is a price, a year or a pair of words.
std::optional<QString> accept(QStringView match, QStringView before)
{
    if (before.contains(u'$') || before.contains(u'€') || before.contains(u'£'))
        return {};
    const QList<uint> characters = match.toUcs4();
    const auto isLetter = [](char32_t character) { return character >= U'A' && character <= U'Z'; };
    const auto isNumber = [](char32_t character) { return QChar::isNumber(character); };
    if (std::ranges::any_of(characters, isLetter)) {
        if (!std::ranges::any_of(characters, isNumber))
            return {};
        return match.toString();
    }
    if (characters.size() == 4) {
        int year = 0;
        for (const char32_t character : characters)
            year = year * 10 + QChar::digitValue(character);
        if (year >= 1900 && year <= 2099)
            return {};
    }
    return match.toString().remove(u' ').remove(u'-');
}

/// Where code words stand in the original text, in order.
std::vector<qsizetype> wordPositions(const FoldedText &text)
{
    std::vector<qsizetype> positions;
    codeWords.scan(text.folded, [&](qsizetype at) {
        positions.push_back(text.origins[std::size_t(at)]);
        return true;
    });
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
std::optional<QString> bestCode(QStringView text, const std::vector<qsizetype> &positions,
                                qsizetype reach)
{
    if (positions.empty())
        return {};
    std::optional<QString> best;
    qsizetype bestDistance = 0;
    for (const QStringView match : LoginCodePattern::matches(text)) {
        const qsizetype start = match.begin() - text.begin();
        const qsizetype distance = distanceToNearest(positions, start);
        if (distance > reach || (best && distance >= bestDistance))
            continue;
        const qsizetype ahead = std::min(start, priceReach);
        if (auto code = accept(match, text.sliced(start - ahead, ahead))) {
            best = std::move(code);
            bestDistance = distance;
        }
    }
    return best;
}

bool isStopped(QStringView text)
{
    bool isStopped = false;
    linkStopWords.scan(text, [&](qsizetype at) {
        const bool isRestOfLabel =
            at > 0 && (text[at - 1].isLetterOrNumber() || text[at - 1] == u'-');
        isStopped = !(isRestOfLabel && text.sliced(at).startsWith(hostOfX));
        return !isStopped;
    });
    return isStopped;
}

std::optional<QUrl> signInLink(const std::vector<MailLink> &links)
{
    std::optional<QUrl> best;
    int bestScore = 0;
    for (const MailLink &link : links) {
        const FoldedText text(link.text);
        const QStringView label = text.folded;
        const QString address = link.url.toString(QUrl::FullyEncoded).toLower();
        if (isStopped(label) || isStopped(address))
            continue;
        const int score = (linkWords.isIn(label) ? 2 : 0) + (addressWords.isIn(address) ? 1 : 0);
        if (score > bestScore) {
            bestScore = score;
            best = link.url;
        }
    }
    return best;
}

} // namespace

Detection detect(const QString &subject, const QString &text, const std::vector<MailLink> &links)
{
    const FoldedText heading(subject);
    const FoldedText body(opening(text));
    const std::vector<qsizetype> inHeading = wordPositions(heading);
    std::vector<qsizetype> inBody = wordPositions(body);
    if (inHeading.empty() && inBody.empty()) {
        if (signInSubjectWords.isIn(heading.folded) || signInBodyPhrases.isIn(body.folded))
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
