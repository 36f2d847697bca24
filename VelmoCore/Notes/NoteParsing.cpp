#include "VelmoCore/Notes/NoteParsing.h"

#include <QRegularExpression>

#include <algorithm>

namespace velmo::NoteParsing {

namespace {

/// Punctuation at the end belongs to the sentence, and a bracket to what opened before the address.
qsizetype lengthOfAddress(QStringView found)
{
    while (!found.isEmpty()) {
        const QChar last = found.back();
        const bool closes = last == QLatin1Char(')') &&
                            found.count(QLatin1Char(')')) > found.count(QLatin1Char('('));
        if (!closes && !QStringView(u".,;:!?'\"]}*_…”’»").contains(last))
            break;
        found.chop(1);
    }
    return found.size();
}

} // namespace

std::vector<QString> tags(const QString &text)
{
    static const QRegularExpression pattern(QStringLiteral(R"((?:^|\s)#([\p{L}\p{N}_-]{1,40}))"),
                                            QRegularExpression::MultilineOption |
                                                QRegularExpression::UseUnicodePropertiesOption);
    std::vector<QString> tags;
    for (const auto &match : pattern.globalMatch(text)) {
        const QString tag = match.captured(1).toLower();
        if (std::ranges::find(tags, tag) == tags.end())
            tags.push_back(tag);
    }
    return tags;
}

std::vector<Link> linksWithPlaces(const QString &text)
{
    static const QRegularExpression pattern(
        QStringLiteral(
            R"(\b(?:(https?://|www\.)[^\s<>"“”]+|(mailto:)?[\w.+-]{1,64}@[\w-]+(?:\.[\w-]+)+))"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    std::vector<Link> links;
    for (const auto &match : pattern.globalMatch(text)) {
        const QStringView found = match.capturedView();
        const QString address = found.first(lengthOfAddress(found)).toString();
        QString full = address;
        if (match.capturedView(1).startsWith(u"www", Qt::CaseInsensitive))
            full.prepend(QStringLiteral("https://"));
        else if (match.capturedLength(1) == 0 && match.capturedLength(2) == 0)
            full.prepend(QStringLiteral("mailto:"));
        const QUrl url(full);
        if (url.isValid() && !(url.host().isEmpty() && url.path().isEmpty()))
            links.push_back({match.capturedStart(), address.size(), url});
    }
    return links;
}

std::vector<QUrl> links(const QString &text)
{
    std::vector<QUrl> urls;
    for (const Link &link : linksWithPlaces(text))
        urls.push_back(link.url);
    return urls;
}

QString title(const QString &text)
{
    for (const QStringView line : QStringView(text).tokenize(u'\n')) {
        if (const QStringView trimmed = line.trimmed(); !trimmed.isEmpty())
            return trimmed.toString();
    }
    return {};
}

} // namespace velmo::NoteParsing
