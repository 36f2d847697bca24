#include "VelmoSystem/Control/RecordTable.h"

#include "VelmoCore/Foundation/Text.h"
#include "VelmoCore/Foundation/Words.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <algorithm>
#include <numeric>

namespace velmo::RecordTable {

namespace {

constexpr qsizetype gap = 2;
constexpr qsizetype narrowest = 8;

QString text(const QJsonValue &value)
{
    if (value.isArray()) {
        QStringList texts;
        for (const QJsonValue &element : value.toArray())
            texts.append(text(element));
        return texts.join(QStringLiteral(", "));
    }
    if (value.isObject())
        return QString::fromUtf8(QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact));
    QString text = value.toVariant().toString();
    std::ranges::replace_if(
        text, [](QChar character) { return character.category() == QChar::Other_Control; }, u' ');
    return text;
}

/// A moment in the user's time zone and form.
QString localText(const QJsonValue &value)
{
    static const QRegularExpression moment(
        QStringLiteral(R"(^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d(Z|[+-]\d\d:\d\d)$)"));
    const QString written = text(value);
    return moment.match(written).hasMatch()
               ? Words::dateAndTime(Date(std::chrono::seconds(
                     QDateTime::fromString(written, Qt::ISODate).toSecsSinceEpoch())))
               : written;
}

using Row = std::vector<QString>;

Row cells(const std::vector<VerbColumn> &columns, const QJsonObject &record,
          QString (*shown)(const QJsonValue &))
{
    Row row;
    for (const VerbColumn &column : columns)
        row.push_back(shown(record[column.key]));
    return row;
}

/// How wide each column is: as its widest cell, less where all of them don't fit.
std::vector<qsizetype> widths(const std::vector<Row> &rows, qsizetype width)
{
    std::vector<qsizetype> widths(rows.front().size());
    for (const Row &row : rows) {
        for (std::size_t column = 0; column < row.size(); ++column)
            widths[column] = std::max(
                widths[column],
                std::min(width, Text::characterCount(QStringView(row[column]).left(8 * width))));
    }
    const qsizetype available = width - gap * qsizetype(widths.size() - 1);
    while (std::accumulate(widths.begin(), widths.end(), qsizetype(0)) > available) {
        qsizetype &widest = *std::ranges::max_element(widths);
        if (widest <= narrowest)
            break;
        --widest;
    }
    return widths;
}

QString fitted(const QString &cell, qsizetype width)
{
    const QString start = cell.left(8 * width + 8);
    const qsizetype count = Text::characterCount(start);
    if (count > width)
        return Text::prefix(start, width - 1) + u'…';
    return start + QString(width - count, u' ');
}

} // namespace

QString aligned(const std::vector<VerbColumn> &columns, const QJsonArray &records, int width)
{
    if (records.isEmpty())
        return {};
    std::vector<Row> rows(1);
    for (const VerbColumn &column : columns)
        rows.front().push_back(column.heading);
    for (const QJsonValue &record : records)
        rows.push_back(cells(columns, record.toObject(), localText));

    const std::vector<qsizetype> columnWidths = widths(rows, std::max<qsizetype>(width, narrowest));
    QString lines;
    for (const Row &row : rows) {
        QString line;
        for (std::size_t column = 0; column < row.size(); ++column)
            line += fitted(row[column], columnWidths[column]) + QString(gap, u' ');
        while (line.endsWith(u' '))
            line.chop(1);
        lines += line + u'\n';
    }
    return lines;
}

QString separated(const std::vector<VerbColumn> &columns, const QJsonArray &records)
{
    QString lines;
    for (const QJsonValue &record : records) {
        const Row row = cells(columns, record.toObject(), text);
        lines += QStringList(row.begin(), row.end()).join(u'\t') + u'\n';
    }
    return lines;
}

} // namespace velmo::RecordTable
