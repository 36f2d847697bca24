#include "VelmoSystem/Linux/Calendar/EvolutionSources.h"

#include <QColor>
#include <QHash>

#include <algorithm>

namespace velmo::EvolutionSources {

namespace {

constexpr int deepest = 8; // an account, its collection, and no circle

/// By "group/key".
using Keys = QHash<QString, QString>;

QString unescaped(QStringView value)
{
    QString text;
    for (qsizetype at = 0; at < value.size(); ++at) {
        const bool isEscape = value[at] == u'\\' && at + 1 < value.size();
        const QChar c = isEscape ? value[++at] : value[at];
        if (!isEscape || c == u'\\')
            text += c;
        else if (c == u's')
            text += u' ';
        else if (c == u'n' || c == u't' || c == u'r')
            text += u'\n';
    }
    return text.simplified();
}

Keys keysOf(const QString &text)
{
    Keys keys;
    QString group;
    for (const QStringView whole : QStringView(text).split(u'\n')) {
        const QStringView line = whole.trimmed();
        const qsizetype equals = line.indexOf(u'=');
        if (line.startsWith(u'[') && line.endsWith(u']'))
            group = line.sliced(1, line.size() - 2).toString() + u'/';
        else if (!line.startsWith(u'#') && equals > 0)
            keys.insert(group + line.first(equals).trimmed().toString(),
                        unescaped(line.sliced(equals + 1)));
    }
    return keys;
}

bool isOff(const Keys &keys, const char *key)
{
    return keys.value(QLatin1StringView(key)) == u"false";
}

/// In Orvane's language, if the source has it.
QString titleOf(const Keys &keys)
{
    for (const char *key : {"Data Source/DisplayName[pt_BR]", "Data Source/DisplayName[pt]",
                            "Data Source/DisplayName"}) {
        QString title = keys.value(QLatin1StringView(key));
        if (!title.isEmpty())
            return title;
    }
    return {};
}

CalendarColor colorOf(const Keys &keys)
{
    QColor color;
    color.setNamedColor(keys.value(QStringLiteral("Calendar/Color")));
    if (!color.isValid())
        color = QColor(0xbe, 0xce, 0xdd); // what the store itself takes then
    return {color.redF(), color.greenF(), color.blueF()};
}

/// Kept in a file of the server's own.
bool isOfServer(const Keys &keys)
{
    return keys.value(QStringLiteral("Calendar/BackendName")) == u"local" &&
           keys.value(QStringLiteral("Local Backend/CustomFile")).isEmpty();
}

QString addressOf(const Keys &keys)
{
    for (const char *key :
         {"Collection/Identity", "Authentication/User", "Mail Identity/Address"}) {
        QString address = keys.value(QLatin1StringView(key));
        if (address.contains(u'@'))
            return address;
    }
    return {};
}

} // namespace

std::vector<StoredCalendar> calendars(const Texts &sources)
{
    std::map<QString, Keys> all;
    for (const auto &[uid, text] : sources)
        all.emplace(uid, keysOf(text));
    std::vector<StoredCalendar> calendars;
    for (const auto &[uid, keys] : all) {
        const bool isCalendar = keys.contains(QStringLiteral("Calendar/BackendName"));
        bool isOn =
            isCalendar && !isOff(keys, "Calendar/Selected") && !isOff(keys, "Calendar/Enabled");
        QString address;
        auto source = all.find(uid);
        for (int depth = 0; isOn && source != all.end() && depth < deepest; ++depth) {
            isOn = !isOff(source->second, "Data Source/Enabled") &&
                   !isOff(source->second, "Collection/CalendarEnabled");
            if (address.isEmpty())
                address = addressOf(source->second);
            source = all.find(source->second.value(QStringLiteral("Data Source/Parent")));
        }
        if (isOn)
            calendars.push_back({.id = uid,
                                 .title = titleOf(keys),
                                 .color = colorOf(keys),
                                 .canEdit = isOfServer(keys),
                                 .address = address});
    }
    std::ranges::stable_sort(calendars, [](const auto &a, const auto &b) {
        return a.title.localeAwareCompare(b.title) < 0;
    });
    return calendars;
}

} // namespace velmo::EvolutionSources
