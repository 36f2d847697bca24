#include "VelmoSystem/Verbs/ClipboardVerbs.h"

#include "VelmoCore/Clipboard/ClipboardStore.h"
#include "VelmoCore/Files/FileNaming.h"
#include "VelmoSystem/Clipboard/ClipboardMonitor.h"

#include <QJsonObject>

namespace velmo {

namespace {

constexpr qsizetype longestLine = 80;
/// A history may be long, and its list is made on the main thread.
constexpr std::size_t usualLimit = 200;

const QString noun = QStringLiteral("clipboard");
const VerbArgument itemNumber{.name = QStringLiteral("N"), .kind = VerbArgument::Kind::number};

QString joined(const ClipItem &item, QString (*name)(const QUrl &), const QString &separator)
{
    QStringList names;
    for (const QUrl &file : item.fileURLs.value_or(std::vector<QUrl>()))
        names.append(name(file));
    return names.join(separator);
}

/// What it holds, in one line that may be cut.
QString line(const ClipItem &item)
{
    if (item.kind == ClipKind::image)
        return QStringLiteral("%1 × %2")
            .arg(item.imageWidth.value_or(0))
            .arg(item.imageHeight.value_or(0));
    const QString text = item.kind == ClipKind::files
                             ? joined(item, FileNaming::nameOf, QStringLiteral(", "))
                             : item.text.value_or(QString());
    // What is beyond doesn't show, and may be long.
    QString line = QStringView(text).trimmed().left(4 * longestLine).toString().simplified();
    if (line.size() <= longestLine)
        return line;
    line.truncate(longestLine - 1);
    if (line.back().isHighSurrogate())
        line.chop(1);
    return line + u'…';
}

QJsonObject record(const ClipItem &item, std::size_t place)
{
    QStringList marks;
    if (item.isPinned)
        marks.append(QStringLiteral("fixado"));
    if (item.isFavorite)
        marks.append(QStringLiteral("favorito"));
    return {{QStringLiteral("number"), int(place) + 1},
            {QStringLiteral("kind"), VerbTable::caseName(item.kind)},
            {QStringLiteral("kindTitle"), ClipKinds::word(item.kind)},
            {QStringLiteral("text"), line(item)},
            {QStringLiteral("date"), VerbTable::date(item.date)},
            {QStringLiteral("isFavorite"), item.isFavorite},
            {QStringLiteral("isPinned"), item.isPinned},
            {QStringLiteral("marks"), marks.join(QStringLiteral(", "))}};
}

/// In the order of the page's list.
QJsonArray records(const ClipboardStore &store, const VerbCall &call)
{
    const auto items = store.items(QString());
    QJsonArray records;
    const std::size_t count = VerbTable::limit(call, items.size(), usualLimit);
    for (std::size_t place = 0; place < count; ++place)
        records.append(record(items[place], place));
    return records;
}

ClipItem itemOf(const ClipboardStore &store, const VerbCall &call)
{
    const auto items = store.items(QString());
    return items[VerbTable::place(call, items.size())];
}

QString wholeText(const ClipItem &item)
{
    if (item.kind == ClipKind::image)
        throw LocalizedError(
            QStringLiteral("É uma imagem de %1 pixels, sem texto.").arg(line(item)));
    return item.kind == ClipKind::files
               ? joined(
                     item, [](const QUrl &file) { return file.toLocalFile(); },
                     QStringLiteral("\n"))
               : item.text.value_or(QString());
}

} // namespace

std::vector<VerbSyntax> ClipboardVerbs::syntaxes()
{
    return {
        {noun,
         QStringLiteral("list"),
         QStringLiteral("lista o histórico, os fixados primeiro"),
         {},
         {VerbTable::limitOption(QStringLiteral("no máximo N itens, 200 sem esta opção"))},
         {{QStringLiteral("number"), QStringLiteral("N")},
          {QStringLiteral("kindTitle"), QStringLiteral("Tipo")},
          {QStringLiteral("text"), QStringLiteral("Conteúdo")},
          {QStringLiteral("date"), QStringLiteral("Data")},
          {QStringLiteral("marks"), QStringLiteral("Marcas")}}},
        {noun,
         QStringLiteral("show"),
         QStringLiteral("escreve todo o texto do item, ou os caminhos dos arquivos"),
         {itemNumber}},
        {noun,
         QStringLiteral("copy"),
         QStringLiteral("põe o item de volta no clipboard"),
         {itemNumber}},
        {noun,
         QStringLiteral("add"),
         QStringLiteral("guarda um texto no histórico, sem copiá-lo"),
         {{.name = QStringLiteral("TEXTO"), .isRepeated = true}}},
        {noun, QStringLiteral("clear"),
         QStringLiteral("apaga o histórico, exceto fixados, favoritos e coleções")},
    };
}

std::vector<Verb> ClipboardVerbs::make(ClipboardStore &store, ClipboardMonitor &monitor,
                                       const Scheduler &scheduler)
{
    const auto list = [&store](const VerbCall &call, const VerbReply &reply) {
        reply.list(records(store, call));
    };
    const auto show = [&store](const VerbCall &call, const VerbReply &reply) {
        reply.succeed(wholeText(itemOf(store, call)));
    };
    const auto copy = [&store, &monitor](const VerbCall &call, const VerbReply &reply) {
        monitor.copy(itemOf(store, call), [reply](bool isCopied) {
            if (isCopied)
                reply.succeed();
            else
                reply.fail(QStringLiteral("A imagem não pôde ser copiada."));
        });
    };
    const auto add = [&store, &scheduler](const VerbCall &call, const VerbReply &reply) {
        const auto item = ClipItems::fromText(call.text(0), {}, scheduler.now());
        if (!item)
            throw LocalizedError(QStringLiteral("O texto está em branco."));
        store.add(*item);
        reply.succeed();
    };
    const auto clear = [&store](const VerbCall &, const VerbReply &reply) {
        store.clear(false);
        reply.succeed();
    };
    return VerbTable::bind(syntaxes(), {{QStringLiteral("clipboard list"), list},
                                        {QStringLiteral("clipboard show"), show},
                                        {QStringLiteral("clipboard copy"), copy},
                                        {QStringLiteral("clipboard add"), add},
                                        {QStringLiteral("clipboard clear"), clear}});
}

void ClipboardVerbs::connectChanges(const ClipboardStore &store, const QObject *listener,
                                    const VerbTable::Changed &changed)
{
    QObject::connect(&store, &ClipboardStore::itemsChanged, listener,
                     [changed] { changed(noun, QStringLiteral("items")); });
}

} // namespace velmo
