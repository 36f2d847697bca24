#include "VelmoCore/Files/ArchiveListing.h"

#include "VelmoCore/Foundation/Overloaded.h"
#include "VelmoCore/Foundation/Words.h"

#include <QSet>
#include <QStringList>

#include <algorithm>
#include <array>
#include <limits>

namespace velmo {

namespace {

using Value = ArchiveError::Value;

QString describe(const Value &value)
{
    return std::visit(
        overloaded{
            [](const ArchiveError::Unsupported &error) {
                return QStringLiteral("Formato ou recurso não suportado: %1").arg(error.text);
            },
            [](const ArchiveError::Failed &error) {
                return error.text.isEmpty() ? QStringLiteral("A extração falhou.") : error.text;
            },
            [](const ArchiveError::TooLarge &error) {
                return QStringLiteral("Extração interrompida: o conteúdo passou de %1. Pode ser um "
                                      "arquivo malicioso (zip bomb).")
                    .arg(Words::size(error.limit));
            },
            [](const ArchiveError::UnsafeEntry &error) {
                return QStringLiteral("Entrada insegura recusada: %1").arg(error.path);
            },
            [](const ArchiveError::PasswordRequired &) {
                return QStringLiteral("Este arquivo está protegido por senha.");
            },
            [](const ArchiveError::WrongPassword &) { return QStringLiteral("Senha incorreta."); },
        },
        value);
}

ArchiveError passwordError(bool passwordGiven)
{
    return ArchiveError(passwordGiven ? Value(ArchiveError::WrongPassword())
                                      : Value(ArchiveError::PasswordRequired()));
}

bool holds(const QString &text, std::initializer_list<const char *> phrases)
{
    return std::ranges::any_of(phrases, [&](const char *phrase) {
        return text.contains(QLatin1String(phrase), Qt::CaseInsensitive);
    });
}

/// The text from the field with that number on; fields are what spaces divide.
QStringView fromField(QStringView line, int number)
{
    qsizetype at = 0;
    for (int field = 0; at < line.size(); ++field) {
        while (at < line.size() && line[at] == u' ')
            ++at;
        if (field == number)
            break;
        while (at < line.size() && line[at] != u' ')
            ++at;
    }
    return line.mid(at);
}

constexpr QStringView hardLinkArrow = u" link to ";
constexpr int tarNameField = 8;

bool pointsOut(QStringView path)
{
    const auto components = QStringTokenizer(path, u'/');
    return path.startsWith(u'/') ||
           std::ranges::find(components, QStringView(u"..")) != components.end();
}

void checkKind(QChar kind, QStringView path)
{
    if (QStringView(u"cbps").contains(kind))
        throw ArchiveError(ArchiveError::UnsafeEntry{path.toString()});
}

/// Bytes. Longer ones can't be walked, measured or removed by their path.
constexpr qsizetype longestPath = 3072;
constexpr qsizetype shownPath = 200;

/// No entry lies beneath one that is no folder.
void checkParents(const std::vector<ArchiveEntry> &entries)
{
    QSet<QStringView> files;
    files.reserve(qsizetype(entries.size()));
    for (const ArchiveEntry &entry : entries) {
        if (!entry.isDirectory)
            files.insert(entry.path);
    }
    for (const ArchiveEntry &entry : entries) {
        for (qsizetype cut = entry.path.indexOf(u'/'); cut > 0 && cut + 1 < entry.path.size();
             cut = entry.path.indexOf(u'/', cut + 1)) {
            if (files.contains(QStringView(entry.path).left(cut)))
                throw ArchiveError(ArchiveError::UnsafeEntry{entry.path});
        }
    }
}

QStringView field(QStringView line, int number)
{
    const QStringView rest = fromField(line, number);
    const qsizetype end = rest.indexOf(u' ');
    return end < 0 ? rest : rest.left(end);
}

} // namespace

ArchiveError::ArchiveError(const Value &value) : LocalizedError(describe(value)), m_value(value)
{
}

std::vector<ArchiveEntry> ArchiveListing::parseTechnicalListing(const QString &text)
{
    std::vector<ArchiveEntry> entries;
    std::optional<QString> path;
    ArchiveEntry entry;
    const auto flush = [&] {
        if (path) {
            entry.path = *path;
            entries.push_back(entry);
        }
        path.reset();
        entry = {};
    };
    for (const QStringView line : QStringTokenizer(QStringView(text), u'\n')) {
        if (line.isEmpty()) {
            flush();
            continue;
        }
        const qsizetype cut = line.indexOf(u" = ");
        const QStringView key = line.left(cut);
        if (cut < 0)
            continue;
        const QStringView value = line.mid(cut + 3);
        if (key == u"Path")
            path = value.toString();
        else if (key == u"Size")
            entry.size = value.toLongLong();
        else if (key == u"Folder")
            entry.isDirectory = entry.isDirectory || value == u"+";
        else if (key == u"Attributes")
            entry.isDirectory = entry.isDirectory || value.startsWith(u'D');
        else if (key == u"Mode") // which is all that XAR has
            entry.isDirectory = entry.isDirectory || value.startsWith(u'd');
    }
    flush();
    return entries;
}

std::vector<ArchiveEntry> ArchiveListing::parseTarListing(const QString &text)
{
    constexpr int sizeField = 4;
    std::vector<ArchiveEntry> entries;
    for (const QStringView line : QStringTokenizer(QStringView(text), u'\n')) {
        QStringView name = fromField(line, tarNameField);
        if (name.isEmpty())
            continue;
        const QStringView arrow = line.startsWith(u'h') ? hardLinkArrow : QStringView(u" -> ");
        if (const qsizetype target = name.indexOf(arrow); target >= 0)
            name = name.left(target);
        entries.push_back({name.toString(), field(line, sizeField).toLongLong(),
                           line.startsWith(u'd') || name.endsWith(u'/')});
    }
    return entries;
}

QByteArray ArchiveListing::unescaped(const QByteArray &text)
{
    constexpr int digits = 3;
    constexpr int octal = 8;
    constexpr int firstForeign = 0x80;
    if (!text.contains('\\'))
        return text;
    QByteArray result;
    result.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        bool isNumber = false;
        const int byte = text[i] == '\\' ? text.mid(i + 1, digits).toInt(&isNumber, octal) : 0;
        if (isNumber && byte >= firstForeign && byte <= std::numeric_limits<uchar>::max()) {
            result += char(byte);
            i += digits;
            continue;
        }
        result += text[i];
        if (text[i] == '\\' && i + 1 < text.size())
            result += text[++i]; // a backslash of its own
    }
    return result;
}

ArchiveError ArchiveListing::unrecognized()
{
    return ArchiveError(ArchiveError::Unsupported{
        QStringLiteral("o arquivo não é um formato compactado reconhecido ou está danificado.")});
}

ArchiveError ArchiveListing::classify7z(const QString &text, int status, bool passwordGiven)
{
    constexpr int interrupted = 255;
    if (holds(text, {"wrong password"}) ||
        (status == interrupted && holds(text, {"break signaled", "enter password"})))
        return passwordError(passwordGiven);
    if (holds(text, {"can't open as archive", "cannot open the file as archive", "is not archive"}))
        return unrecognized();
    if (holds(text, {"unsupported method"}))
        return ArchiveError(
            ArchiveError::Unsupported{QStringLiteral("método de compressão não suportado.")});
    for (const QStringView line : QStringTokenizer(QStringView(text), u'\n')) {
        if (line.startsWith(u"ERROR"))
            return ArchiveError(ArchiveError::Failed{line.toString()});
    }
    return ArchiveError(
        ArchiveError::Failed{QStringLiteral("A extração falhou (código %1).").arg(status)});
}

ArchiveError ArchiveListing::classify(const QString &text, bool passwordGiven)
{
    if (holds(text, {"passphrase", "password"}))
        return passwordError(passwordGiven);
    if (holds(text, {"unrecognized archive format"}))
        return unrecognized();
    return ArchiveError(ArchiveError::Failed{text.trimmed()});
}

QString ArchiveListing::baseName(const QString &fileName)
{
    constexpr std::array doubled = {".tar.gz", ".tar.bz2", ".tar.xz", ".tgz", ".tbz", ".txz"};
    for (const char *ending : doubled) {
        if (fileName.endsWith(QLatin1String(ending), Qt::CaseInsensitive))
            return fileName.chopped(qsizetype(std::char_traits<char>::length(ending)));
    }
    const qsizetype dot = fileName.lastIndexOf(u'.');
    return dot > 0 ? fileName.left(dot) : fileName;
}

void ArchiveListing::check(const std::vector<ArchiveEntry> &entries, qint64 sizeLimit)
{
    for (const ArchiveEntry &entry : entries) {
        if (pointsOut(entry.path))
            throw ArchiveError(ArchiveError::UnsafeEntry{entry.path});
        constexpr qsizetype mostBytes = 3; // of a UTF-16 unit in UTF-8
        if (entry.path.size() > longestPath / mostBytes && entry.path.toUtf8().size() > longestPath)
            throw ArchiveError(ArchiveError::UnsafeEntry{entry.path.left(shownPath) + u'…'});
    }
    checkSizes(entries, sizeLimit);
    checkParents(entries);
}

qint64 ArchiveListing::checkSizes(const std::vector<ArchiveEntry> &entries, qint64 sizeLimit)
{
    qint64 left = sizeLimit;
    for (const ArchiveEntry &entry : entries) {
        const qint64 size = std::max<qint64>(entry.size, 0);
        if (size > left)
            throw ArchiveError(ArchiveError::TooLarge{sizeLimit});
        left -= size;
    }
    return sizeLimit - left;
}

void ArchiveListing::checkTechnicalKinds(const QString &text)
{
    QStringView path;
    for (const QStringView line : QStringTokenizer(QStringView(text), u'\n')) {
        const qsizetype cut = line.indexOf(u" = ");
        const QStringView key = line.left(std::max<qsizetype>(cut, 0));
        const QStringView value = line.mid(cut + 3);
        if (key == u"Path")
            path = value;
        else if ((key == u"Mode" || key == u"Attributes") && !value.isEmpty())
            checkKind(value[value.lastIndexOf(u' ') + 1], path);
        else if (key == u"Hard Link" && pointsOut(value))
            throw ArchiveError(ArchiveError::UnsafeEntry{path.toString()});
    }
}

void ArchiveListing::checkTarKinds(const QString &text)
{
    for (const QStringView line : QStringTokenizer(QStringView(text), u'\n')) {
        const QStringView name = fromField(line, tarNameField);
        if (name.isEmpty())
            continue;
        checkKind(line[0], name);
        if (!line.startsWith(u'h'))
            continue;
        // The name itself may hold the words, to hide the target.
        const QString whole = name.toString();
        const QStringList targets = whole.split(hardLinkArrow.toString()).mid(1);
        if (std::ranges::any_of(targets, pointsOut))
            throw ArchiveError(
                ArchiveError::UnsafeEntry{whole.section(hardLinkArrow.toString(), 0, 0)});
    }
}

} // namespace velmo
