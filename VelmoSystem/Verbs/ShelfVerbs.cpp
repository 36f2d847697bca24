#include "VelmoSystem/Verbs/ShelfVerbs.h"

#include "VelmoCore/Foundation/Overloaded.h"
#include "VelmoSystem/Control/VerbJob.h"

#include <QJsonObject>

#include <algorithm>

namespace velmo {

namespace {

const QString noun = QStringLiteral("shelf");

/// A thing on the shelf: the name of its case, the word for it, and what it holds.
struct Content {
    QString kind;
    QString kindTitle;
    QString content; ///< a path, an address or a text
};

Content contentOf(const ShelfItem &item)
{
    return std::visit(
        overloaded{
            [](const ShelfItem::File &file) {
                return Content{QStringLiteral("file"), QStringLiteral("arquivo"), file.path};
            },
            [](const ShelfItem::Link &link) {
                return Content{QStringLiteral("link"), QStringLiteral("link"),
                               QString::fromUtf8(link.value.toEncoded())};
            },
            [](const ShelfItem::Text &text) {
                return Content{QStringLiteral("text"), QStringLiteral("texto"), text.value};
            },
        },
        item.content.value);
}

QJsonArray records(const ShelfStore &store)
{
    QJsonArray records;
    for (const ShelfItem &item : store.items()) {
        const auto [kind, kindTitle, content] = contentOf(item);
        records.append(QJsonObject{{QStringLiteral("number"), records.size() + 1},
                                   {QStringLiteral("name"), item.name},
                                   {QStringLiteral("kind"), kind},
                                   {QStringLiteral("kindTitle"), kindTitle},
                                   {QStringLiteral("content"), content},
                                   {QStringLiteral("group"), VerbTable::text(item.group)},
                                   {QStringLiteral("added"), VerbTable::date(item.added)},
                                   {QStringLiteral("isPinned"), item.isPinned}});
    }
    return records;
}

} // namespace

std::vector<VerbSyntax> ShelfVerbs::syntaxes()
{
    return {
        {noun,
         QStringLiteral("list"),
         QStringLiteral("lista a prateleira"),
         {},
         {},
         {{QStringLiteral("number"), QStringLiteral("N")},
          {QStringLiteral("name"), QStringLiteral("Nome")},
          {QStringLiteral("kindTitle"), QStringLiteral("Tipo")},
          {QStringLiteral("group"), QStringLiteral("Grupo")},
          {QStringLiteral("added"), QStringLiteral("Data")}}},
        {noun,
         QStringLiteral("add"),
         QStringLiteral("move arquivos para a prateleira"),
         {{.name = QStringLiteral("ARQUIVO"),
           .kind = VerbArgument::Kind::file,
           .isRepeated = true}}},
        {noun,
         QStringLiteral("remove"),
         QStringLiteral("tira o item da prateleira; um arquivo movido volta à sua pasta"),
         {{.name = QStringLiteral("N"), .kind = VerbArgument::Kind::number}}},
    };
}

std::vector<Verb> ShelfVerbs::make(ShelfStore &store, ShelfMover &mover, JobCenter &jobs,
                                   ActivityCenter &activity)
{
    const auto follow = [&jobs, &activity](const QString &job, const VerbReply &reply) {
        VerbJob::follow(job, jobs, activity, reply,
                        [reply](const JobOutcome &outcome) { reply.succeed(outcome.message); });
    };
    const auto list = [&store](const VerbCall &, const VerbReply &reply) {
        reply.list(records(store));
    };
    const auto add = [&store, &mover, follow](const VerbCall &call, const VerbReply &reply) {
        const auto files = call.files(0);
        const bool areThere =
            std::ranges::all_of(files, [&](const QUrl &file) { return store.isInNotch(file); });
        std::vector<DroppedItem> items;
        for (const QUrl &file : files)
            items.push_back({DroppedItem::File{file}});
        const auto nothing = [](const auto &) {};
        if (const auto job = mover.moveIn(items, nothing, nothing))
            follow(*job, reply);
        else if (areThere)
            reply.succeed();
        else
            reply.fail(QStringLiteral("Pacotes de aplicativo ficam onde estão."));
    };
    const auto remove = [&store, &mover, follow](const VerbCall &call, const VerbReply &reply) {
        const ShelfItem item = store.items()[VerbTable::place(call, store.items().size())];
        if (const auto job = mover.remove({item.id}))
            follow(*job, reply);
        else if (std::ranges::count(store.items(), item.id, &ShelfItem::id) == 0)
            reply.succeed();
        else
            reply.fail(QStringLiteral("“%1” não pôde voltar à sua pasta.").arg(item.name));
    };
    return VerbTable::bind(syntaxes(), {{QStringLiteral("shelf list"), list},
                                        {QStringLiteral("shelf add"), add},
                                        {QStringLiteral("shelf remove"), remove}});
}

void ShelfVerbs::connectChanges(const ShelfStore &store, const QObject *listener,
                                const VerbTable::Changed &changed)
{
    QObject::connect(&store, &ShelfStore::itemsChanged, listener,
                     [changed] { changed(noun, QStringLiteral("items")); });
}

} // namespace velmo
