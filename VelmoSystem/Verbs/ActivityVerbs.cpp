#include "VelmoSystem/Verbs/ActivityVerbs.h"

#include <QJsonObject>

namespace velmo {

namespace {

const QString noun = QStringLiteral("activity");

QJsonObject record(const ActivityEvent &event)
{
    QJsonArray files;
    for (const QUrl &file : event.fileURLs.value_or(std::vector<QUrl>()))
        files.append(file.toLocalFile());
    return {{QStringLiteral("date"), VerbTable::date(event.date)},
            {QStringLiteral("title"), event.title},
            {QStringLiteral("detail"), VerbTable::text(event.detail)},
            {QStringLiteral("style"), VerbTable::caseName(event.style)},
            {QStringLiteral("source"), event.source},
            {QStringLiteral("files"), files}};
}

} // namespace

std::vector<VerbSyntax> ActivityVerbs::syntaxes()
{
    return {{noun,
             {},
             QStringLiteral("lista o que aconteceu, o mais recente primeiro"),
             {},
             {VerbTable::limitOption(QStringLiteral("no máximo N itens"))},
             {{QStringLiteral("date"), QStringLiteral("Data")},
              {QStringLiteral("title"), QStringLiteral("Título")},
              {QStringLiteral("detail"), QStringLiteral("Detalhe")}}}};
}

std::vector<Verb> ActivityVerbs::make(const ActivityCenter &activity)
{
    const auto list = [&activity](const VerbCall &call, const VerbReply &reply) {
        const auto &history = activity.history();
        QJsonArray records;
        const std::size_t count = VerbTable::limit(call, history.size(), history.size());
        for (std::size_t i = 0; i < count; ++i)
            records.append(record(history[i]));
        reply.list(records);
    };
    return VerbTable::bind(syntaxes(), {{noun, list}});
}

void ActivityVerbs::connectChanges(const ActivityCenter &activity, const QObject *listener,
                                   const VerbTable::Changed &changed)
{
    QObject::connect(&activity, &ActivityCenter::historyChanged, listener,
                     [changed] { changed(noun, QStringLiteral("history")); });
}

} // namespace velmo
