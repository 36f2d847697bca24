#include "VelmoCore/Files/FileNaming.h"

#include "VelmoCore/Foundation/Text.h"

#include <QDateTime>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>
#include <sys/stat.h>

namespace velmo {

namespace {

constexpr qsizetype longestName = 255;
constexpr int widestNumber = 20;

/// A name in front of and behind its last dot; a leading dot divides nothing.
struct Parts {
    QString stem;
    QString extension;
};

Parts partsOf(const QString &name)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    if (dot <= 0)
        return {name, {}};
    return {name.left(dot), name.mid(dot + 1)};
}

QString joined(const QString &stem, const QString &extension)
{
    return extension.isEmpty() ? stem : stem + u'.' + extension;
}

QUrl beside(const QUrl &url, const QString &name)
{
    const QString path = url.adjusted(QUrl::StripTrailingSlash).toLocalFile();
    return QUrl::fromLocalFile(path.left(path.lastIndexOf(u'/') + 1) + name);
}

/// The stem without the number at its end, and the number that comes next.
std::pair<QString, qulonglong> counted(const QString &stem)
{
    static const QRegularExpression ending(QStringLiteral(" (\\d+)$"));
    const QRegularExpressionMatch match = ending.match(stem);
    bool isNumber = false;
    const qulonglong number = match.captured(1).toULongLong(&isNumber);
    if (!isNumber)
        return {stem, 2};
    return {stem.left(match.capturedStart()), number + 1};
}

QString numbered(QString name, int number)
{
    static const QRegularExpression place(QStringLiteral("\\{n(?::(\\d+))?\\}"));
    QList<QRegularExpressionMatch> matches;
    for (auto found = place.globalMatch(name); found.hasNext();)
        matches.prepend(found.next());
    for (const QRegularExpressionMatch &match : matches) {
        const int width = std::min(match.captured(1).toInt(), widestNumber);
        name.replace(match.capturedStart(), match.capturedLength(),
                     QStringLiteral("%1").arg(number, width, 10, QLatin1Char('0')));
    }
    return name;
}

/// The dot of "Dr. {nome}" begins no extension.
bool endsWithExtension(const QString &pattern)
{
    const QString ending = partsOf(pattern).extension;
    return !ending.isEmpty() && !ending.contains(QStringLiteral("{nome}")) &&
           std::ranges::none_of(ending, [](QChar c) { return c.isSpace(); });
}

} // namespace

QString FileNaming::nameOf(const QUrl &url)
{
    return url.adjusted(QUrl::StripTrailingSlash).fileName();
}

bool FileNaming::exists(const QUrl &url)
{
    struct stat entry = {};
    return ::lstat(QFile::encodeName(url.toLocalFile()).constData(), &entry) == 0;
}

QUrl FileNaming::uniqueURL(const QUrl &url, const Exists &exists)
{
    if (!exists(url))
        return url;
    const auto [stem, extension] = partsOf(nameOf(url));
    auto [base, number] = counted(stem);
    for (;; ++number) {
        const QUrl candidate =
            beside(url, joined(base + u' ' + QString::number(number), extension));
        if (!exists(candidate))
            return candidate;
    }
}

QUrl FileNaming::output(const QUrl &url, const std::optional<QUrl> &folder,
                        const std::optional<QString> &suffix,
                        const std::optional<QString> &extension)
{
    const Parts parts = partsOf(nameOf(url));
    const QString stem = suffix ? parts.stem + u' ' + *suffix : parts.stem;
    const QString name = joined(stem, extension.value_or(parts.extension));
    if (!folder)
        return beside(url, name);
    return QUrl::fromLocalFile(folder->adjusted(QUrl::StripTrailingSlash).toLocalFile() + u'/' +
                               name);
}

bool FileNaming::isValid(const QString &name)
{
    return !name.trimmed().isEmpty() && !name.contains(u'/') && !name.contains(u':') &&
           !name.startsWith(u'.') && Text::characterCount(name) <= longestName;
}

std::vector<QString> FileNaming::batchNames(const std::vector<QUrl> &urls, const QString &pattern,
                                            int start, Date date)
{
    const QString day = localDateTime(date).date().toString(Qt::ISODate);
    const bool hasExtension = endsWithExtension(pattern);
    std::vector<QString> names;
    int number = start;
    for (const QUrl &url : urls) {
        const auto [stem, extension] = partsOf(nameOf(url));
        QString name = pattern;
        name.replace(QStringLiteral("{nome}"), stem);
        name.replace(QStringLiteral("{data}"), day);
        name.replace(QStringLiteral("{ext}"), extension);
        name = numbered(name, number++);
        names.push_back(hasExtension ? name : joined(name, extension));
    }
    return names;
}

} // namespace velmo
