#include "VelmoSystem/Linux/Calendar/EvolutionEvents.h"

#include "VelmoCore/Calendar/ICSText.h"
#include "VelmoCore/Foundation/Log.h"

#include <algorithm>

namespace velmo::EvolutionEvents {

std::vector<Component> read(const QString &text)
{
    std::vector<Component> components;
    for (const ICSWriter::Block &block : ICSWriter::blocks(text.toUtf8())) {
        if (!block.isEvent)
            continue;
        const auto *uid = block.first(u"UID");
        const auto *start = block.first(u"DTSTART");
        if (!uid || !start || !ICSParser::date(start->property, QTimeZone::utc())) {
            qCInfo(Log::app, "Compromisso ilegível ignorado: %ls",
                   qUtf16Printable(uid ? uid->property.value : QStringLiteral("sem UID")));
            continue;
        }
        const auto *recurrence = block.first(u"RECURRENCE-ID");
        components.push_back(
            {.uid = ICSParser::unescape(uid->property.value),
             .recurrence = recurrence ? recurrence->property.value : QString(),
             .isOfSeries = recurrence || block.has(u"RRULE") || block.has(u"RDATE"),
             .text = ICSWriter::joined({block})});
    }
    return components;
}

QByteArray joined(std::vector<Component> components)
{
    std::ranges::stable_sort(components, {}, &Component::recurrence);
    QByteArray text;
    for (const Component &component : components)
        text += component.text;
    return text;
}

} // namespace velmo::EvolutionEvents
