#include "VelmoCore/Calendar/ICSParser.h"

#include <QFile>
#include <QHash>
#include <QRegularExpression>

#include <algorithm>
#include <array>

namespace velmo::ICSParser {

namespace {

/// No name of a zone is longer.
constexpr qsizetype nameLimit = 1024;

/// The identifiers without an area. They have to be known: QTimeZone takes any other word for a
/// POSIX rule.
constexpr std::array plainIdentifiers{
    u"CET",       u"CST6CDT",   u"Cuba",     u"EET",     u"EST",    u"EST5EDT",   u"Egypt",
    u"Eire",      u"GB",        u"GB-Eire",  u"GMT",     u"GMT+0",  u"GMT-0",     u"GMT0",
    u"Greenwich", u"HST",       u"Hongkong", u"Iceland", u"Iran",   u"Israel",    u"Jamaica",
    u"Japan",     u"Kwajalein", u"Libya",    u"MET",     u"MST",    u"MST7MDT",   u"NZ",
    u"NZ-CHAT",   u"Navajo",    u"PRC",      u"PST8PDT", u"Poland", u"Portugal",  u"ROC",
    u"ROK",       u"Singapore", u"Turkey",   u"UCT",     u"UTC",    u"Universal", u"W-SU",
    u"WET",       u"Zulu",
};

bool isPlainIdentifier(QStringView name)
{
    return std::any_of(plainIdentifiers.begin(), plainIdentifiers.end(),
                       [&](const char16_t *known) { return name == known; });
}

/// Area and city, of characters that can't leave the folder of zones. The copies of all zones
/// under "posix/" and "right/" don't count.
bool isAreaAndCity(QStringView name)
{
    const auto isPart = [](QChar c) {
        return (c.unicode() < 128 && c.isLetterOrNumber()) || c == u'_' || c == u'-' || c == u'+' ||
               c == u'/';
    };
    return name.contains(u'/') && name.front() >= u'A' && name.front() <= u'Z' &&
           std::all_of(name.begin(), name.end(), isPart);
}

std::optional<QTimeZone> platformZone(QStringView name)
{
    if (name.isEmpty() || (!isAreaAndCity(name) && !isPlainIdentifier(name)))
        return std::nullopt;
    const QTimeZone zone(name.toLatin1());
    return zone.isValid() ? std::optional(zone) : std::nullopt;
}

std::optional<QTimeZone> windowsZone(QStringView name)
{
    for (const auto sensitivity : {Qt::CaseSensitive, Qt::CaseInsensitive}) {
        for (const auto &[key, identifier] : windowsZones()) {
            if (name.compare(key, sensitivity) == 0)
                return platformZone(QString::fromLatin1(identifier));
        }
    }
    return std::nullopt;
}

/// The Area/City, or Area/Region/City, at the end of a path, as `zoneOf` knows it.
template <class ZoneOf>
std::optional<QTimeZone> zoneAtEndOfPath(QStringView name, ZoneOf zoneOf)
{
    const auto pieces = name.split(u'/', Qt::SkipEmptyParts);
    for (qsizetype count = 3; count >= 1; --count) {
        if (pieces.size() < std::max<qsizetype>(count, 2))
            continue;
        const QStringView first = pieces[pieces.size() - count];
        const auto tail = name.sliced(first.begin() - name.begin());
        if (auto zone = zoneOf(tail))
            return zone;
    }
    return std::nullopt;
}

struct KnownIdentifiers {
    QHash<QString, QString> byEnding; ///< what stands behind each "/"
    QHash<QString, QString> byLowerCase;

    /// `name` is another name of `id`, or its own.
    void add(const QString &name, const QString &id)
    {
        for (qsizetype slash = name.indexOf(u'/'); slash >= 0;
             slash = name.indexOf(u'/', slash + 1)) {
            QString &first = byEnding[name.sliced(slash + 1)];
            first = first.isEmpty() ? id : first;
        }
        byLowerCase.insert(name.toLower(), id);
    }
};

/// Qt lists no other names of a zone. The zones' source in short form, which is installed with
/// them, has a line "L {zone} {other name}" for each.
void readOtherNames(KnownIdentifiers &known)
{
    QFile file(QStringLiteral("/usr/share/zoneinfo/tzdata.zi"));
    if (!file.open(QIODevice::ReadOnly))
        return;
    while (!file.atEnd()) {
        const QList<QByteArray> words = file.readLine().simplified().split(' ');
        if (words.size() == 3 && words[0] == "L")
            known.add(QString::fromLatin1(words[2]), QString::fromLatin1(words[1]));
    }
}

KnownIdentifiers readIdentifiers()
{
    KnownIdentifiers known;
    const auto ids = QTimeZone::availableTimeZoneIds();
    for (const QByteArray &bytes : ids) {
        const auto id = QString::fromLatin1(bytes);
        known.add(id, id);
    }
    readOtherNames(known);
    for (const char16_t *plain : plainIdentifiers) {
        const QString id = QString::fromUtf16(plain);
        known.byLowerCase.insert(id.toLower(), id);
    }
    for (const auto &[key, identifier] : windowsZones()) {
        const auto id = QString::fromLatin1(identifier);
        known.byLowerCase.insert(id.toLower(), id);
    }
    return known;
}

const KnownIdentifiers &knownIdentifiers()
{
    static const KnownIdentifiers known = readIdentifiers();
    return known;
}

/// "(UTC-03:00) Brasilia, Cayenne": a city behind the offset.
std::optional<QTimeZone> zoneOfCity(QStringView name)
{
    const qsizetype bracket = name.indexOf(u')');
    if (bracket < 0)
        return std::nullopt;
    for (const QStringView piece : name.sliced(bracket + 1).split(u',')) {
        const QString city = piece.trimmed().toString().replace(u' ', u'_');
        const auto found = knownIdentifiers().byEnding.constFind(city);
        if (found != knownIdentifiers().byEnding.cend())
            return platformZone(*found);
    }
    return std::nullopt;
}

std::optional<QTimeZone> zoneOfOffset(const QString &name)
{
    static const QRegularExpression offset(QStringLiteral(R"((UTC|GMT)\s?[+-]\d{1,2}(:?\d{2})?)"));
    const auto match = offset.match(name);
    if (!match.hasMatch())
        return std::nullopt;
    QString digits = match.captured().sliced(3).trimmed().remove(u':');
    const int sign = digits.startsWith(u'-') ? -1 : 1;
    digits.remove(0, 1);
    const qsizetype hourDigits = digits.size() <= 2 ? digits.size() : digits.size() - 2;
    const int seconds =
        digits.first(hourDigits).toInt() * 3600 + digits.sliced(hourDigits).toInt() * 60;
    const QTimeZone zone(sign * seconds);
    return zone.isValid() ? std::optional(zone) : std::nullopt;
}

std::optional<QTimeZone> zoneInAnyCase(QStringView name)
{
    const auto found = knownIdentifiers().byLowerCase.constFind(name.toString().toLower());
    return found == knownIdentifiers().byLowerCase.cend() ? std::nullopt : platformZone(*found);
}

/// Without the spaces and double quotes around it.
QString bare(QStringView name)
{
    const auto isOuter = [](QChar c) { return c == u'"' || c.isSpace(); };
    while (!name.isEmpty() && isOuter(name.front()))
        name = name.sliced(1);
    while (!name.isEmpty() && isOuter(name.back()))
        name.chop(1);
    return name.toString();
}

} // namespace

std::optional<QTimeZone> timeZone(const QString &name)
{
    const QString wanted = bare(name);
    if (wanted.isEmpty() || wanted.size() > nameLimit)
        return std::nullopt;
    if (auto zone = platformZone(wanted))
        return zone;
    if (auto zone = windowsZone(wanted))
        return zone;
    if (auto zone = zoneAtEndOfPath(wanted, platformZone))
        return zone;
    if (auto zone = zoneOfCity(wanted))
        return zone;
    if (auto zone = zoneOfOffset(wanted))
        return zone;
    if (auto zone = zoneInAnyCase(wanted))
        return zone;
    return zoneAtEndOfPath(wanted, zoneInAnyCase);
}

} // namespace velmo::ICSParser
