#include "VelmoSystem/Control/CommandHelp.h"

#include <algorithm>
#include <iterator>

namespace velmo::CommandHelp {

namespace {

constexpr qsizetype usageWidth = 28;

QString written(const VerbArgument &argument)
{
    const QString text = argument.isRepeated ? argument.name + u'…' : argument.name;
    return argument.isOptional ? u'[' + text + u']' : text;
}

QString written(const VerbOption &option)
{
    return option.value.isEmpty() ? QStringLiteral("--") + option.name
                                  : QStringLiteral("--%1 %2").arg(option.name, option.value);
}

QString summary(const VerbOption &option)
{
    if (option.choices.isEmpty())
        return option.summary;
    return QStringLiteral("%1 (%2)").arg(option.summary, option.choices.join(QStringLiteral(", ")));
}

/// Those of the table, and what each verb that lists takes.
std::vector<VerbOption> optionsOf(const VerbSyntax &syntax)
{
    std::vector<VerbOption> options = syntax.options;
    if (syntax.lists()) {
        QStringList keys;
        for (const VerbColumn &column : syntax.columns)
            keys.append(column.key);
        options.push_back({.name = QStringLiteral("json"),
                           .summary = QStringLiteral("escreve uma lista JSON de objetos com %1")
                                          .arg(keys.join(QStringLiteral(", ")))});
    }
    return options;
}

QString row(const QString &left, const QString &right)
{
    const QString start = QStringLiteral("  ") + left;
    const QString gap = start.size() + 1 < usageWidth ? start.leftJustified(usageWidth)
                                                      : start + u'\n' + QString(usageWidth, u' ');
    return gap + right + u'\n';
}

QString generalText(const Table &table)
{
    QString text = QStringLiteral(R"(Uso: orvane [ARQUIVO…]
     orvane COMANDO

Sem comando, inicia o Orvane. Se ele já está em execução, entrega-lhe os arquivos
ou, sem arquivos, mostra os ajustes.

Comandos para o Orvane em execução:
)");
    for (const QString &noun : nouns(table)) {
        const auto verbs = verbsOf(table, noun);
        if (verbs.size() > 1)
            text += u'\n';
        for (const VerbSyntax &verb : verbs)
            text += row(usage(verb), verb.summary);
    }
    return text + QStringLiteral("\nOpções:\n") +
           row(QStringLiteral("--help"),
               QStringLiteral("mostra esta ajuda; depois de um comando, a dele")) +
           row(QStringLiteral("--version"), QStringLiteral("mostra a versão")) +
           row(QStringLiteral("--"), QStringLiteral("o que vem depois não é opção"));
}

QString verbText(const VerbSyntax &verb)
{
    QString text =
        QStringLiteral("Uso: orvane %1\n\n  %2\n\nOpções:\n").arg(usage(verb), verb.summary);
    for (const VerbOption &option : optionsOf(verb))
        text += row(written(option), summary(option));
    return text + row(QStringLiteral("--help"), QStringLiteral("mostra esta ajuda"));
}

/// What troff would take for its own.
QString escaped(QString text)
{
    text.replace(u'\\', QStringLiteral("\\e")).replace(u'-', QStringLiteral("\\-"));
    return text.startsWith(u'.') || text.startsWith(u'\'') ? QStringLiteral("\\&") + text : text;
}

QString item(const QString &tag, const QString &body)
{
    return QStringLiteral(".TP\n\\fB%1\\fR\n%2\n").arg(escaped(tag), escaped(body));
}

QString manualCommands(const Table &table)
{
    QString text;
    for (const QString &noun : nouns(table)) {
        for (const VerbSyntax &verb : verbsOf(table, noun)) {
            text += item(usage(verb), verb.summary);
            const auto options = optionsOf(verb);
            if (options.empty())
                continue;
            text += QStringLiteral(".RS\n");
            for (const VerbOption &option : options)
                text += item(written(option), summary(option));
            text += QStringLiteral(".RE\n");
        }
    }
    return text;
}

} // namespace

QString usage(const VerbSyntax &syntax)
{
    QStringList words{syntax.command()};
    for (const VerbArgument &argument : syntax.withoutInput().arguments)
        words.append(written(argument));
    for (const VerbOption &option : syntax.options)
        words.append(u'[' + written(option) + u']');
    return words.join(u' ');
}

QStringList nouns(const Table &table)
{
    QStringList nouns;
    for (const VerbSyntax &syntax : table) {
        if (!nouns.contains(syntax.noun))
            nouns.append(syntax.noun);
    }
    return nouns;
}

std::vector<VerbSyntax> verbsOf(const Table &table, const QString &noun)
{
    std::vector<VerbSyntax> verbs;
    std::ranges::copy_if(table, std::back_inserter(verbs),
                         [&](const VerbSyntax &syntax) { return syntax.noun == noun; });
    return verbs;
}

QString text(const Table &table, const QStringList &topic)
{
    if (topic.isEmpty())
        return generalText(table);
    const auto verbs = verbsOf(table, topic.first());
    const auto verb = std::ranges::find(verbs, topic.value(1), &VerbSyntax::name);
    if (verb != verbs.end() && (topic.size() > 1 || verbs.size() == 1))
        return verbText(*verb);
    QString text = QStringLiteral("Uso: orvane %1 COMANDO\n\n").arg(topic.first());
    for (const VerbSyntax &each : verbs)
        text += row(usage(each), each.summary);
    return text + QStringLiteral("\nDepois de um comando, --help mostra o que ele aceita.\n");
}

QString hint(const QStringList &topic)
{
    return QStringLiteral("Ajuda: %1\n")
        .arg((QStringList{QStringLiteral("orvane")} + topic + QStringList{QStringLiteral("--help")})
                 .join(u' '));
}

QString manual(const Table &table, const QString &version)
{
    return QStringLiteral(R"(.TH ORVANE 1 "" "Orvane %1" "Comandos do usuário"
.SH NOME
orvane \- painel de ferramentas no alto da tela
.SH SINOPSE
.B orvane
[\fIARQUIVO\fR…]
.br
.B orvane
\fICOMANDO\fR
.SH DESCRIÇÃO
Sem comando, inicia o Orvane. Se ele já está em execução, entrega-lhe os arquivos ou, sem arquivos,
mostra os ajustes. Os comandos são para o Orvane em execução.
.PP
Listas saem alinhadas em um terminal e, fora dele, com uma linha por registro e tabulações entre as
colunas. Ctrl+C cancela um comando demorado.
.SH COMANDOS
)")
               .arg(version) +
           manualCommands(table) + QStringLiteral(R"(.SH OPÇÕES
.TP
.B \-\-help
Mostra a ajuda; depois de um comando, a dele.
.TP
.B \-\-version
Mostra a versão.
.TP
.B \-\-
O que vem depois não é opção.
.SH ESTADO DE SAÍDA
.TP
.B 0
O comando foi feito.
.TP
.B 1
O Orvane recusou o comando ou não está em execução; a saída de erros diz o motivo.
.TP
.B 2
O comando está escrito errado.
.TP
.B 130
O comando foi interrompido por Ctrl+C.
.SH BARRAMENTO DE SESSÃO
O serviço
.B app.orvane.Orvane
tem um objeto para cada grupo de comandos, como
.BR /app/orvane/Orvane/settings ,
com a interface
.BR app.orvane.Orvane.Settings .
O sinal
.B Changed
diz o que mudou.
)");
}

} // namespace velmo::CommandHelp
