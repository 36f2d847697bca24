#include "VelmoSystem/Control/VerbTable.h"

#include "VelmoCore/Foundation/LocalizedError.h"

#include <QJsonObject>

#include <algorithm>

namespace velmo::VerbTable {

namespace {

const QString limitName = QStringLiteral("limit");

} // namespace

std::vector<Verb> bind(const std::vector<VerbSyntax> &syntaxes, const Runs &runs)
{
    std::vector<Verb> verbs;
    verbs.reserve(syntaxes.size());
    for (const VerbSyntax &syntax : syntaxes)
        verbs.push_back({syntax, runs.at(syntax.command())});
    return verbs;
}

VerbOption limitOption(const QString &summary)
{
    return {limitName, QStringLiteral("N"), summary, {}, VerbArgument::Kind::number};
}

std::size_t limit(const VerbCall &call, std::size_t count, std::size_t usual)
{
    const auto most = number(call, limitName);
    return std::min(count, most ? std::size_t(*most) : usual);
}

std::size_t place(const VerbCall &call, std::size_t count)
{
    const int number = call.number(0);
    if (number < 1 || std::size_t(number) > count)
        throw LocalizedError(QStringLiteral("Não há item %1.").arg(call.words.value(0)));
    return std::size_t(number) - 1;
}

std::optional<int> number(const VerbCall &call, const QString &option)
{
    const auto given = call.options.find(option);
    if (given == call.options.end())
        return std::nullopt;
    bool isNumber = false;
    const int number = given->second.toInt(&isNumber);
    if (!isNumber)
        throw LocalizedError(QStringLiteral("“%1” não é um número.").arg(given->second));
    return number;
}

std::optional<QUrl> file(const VerbCall &call, const QString &option)
{
    const auto given = call.options.find(option);
    return given == call.options.end() ? std::nullopt
                                       : std::optional(QUrl::fromLocalFile(given->second));
}

QJsonValue date(const std::optional<Date> &date)
{
    if (!date)
        return {};
    const QDateTime local = localDateTime(*date);
    return local.toOffsetFromUtc(local.offsetFromUtc()).toString(Qt::ISODate);
}

QJsonValue text(const std::optional<QString> &text)
{
    return text ? QJsonValue(*text) : QJsonValue();
}

QJsonArray paths(const std::vector<QUrl> &files)
{
    QJsonArray records;
    for (const QUrl &file : files)
        records.append(QJsonObject{{QStringLiteral("path"), file.toLocalFile()}});
    return records;
}

} // namespace velmo::VerbTable
