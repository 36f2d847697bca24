#include "VelmoSystem/Control/CommandLine.h"

#include "VelmoSystem/Control/VerbCheck.h"

#include <algorithm>
#include <optional>

namespace velmo::CommandLine {

namespace {

struct OwnCommand {
    VerbSyntax syntax;
    std::variant<Command, Watch> request;
};

const std::vector<OwnCommand> &ownCommands()
{
    using Kind = VerbArgument::Kind;
    static const std::vector<OwnCommand> commands{
        {{.noun = QStringLiteral("open"),
          .summary = QStringLiteral("abre o painel, no módulo pedido ou no último"),
          .arguments = {{.name = QStringLiteral("MÓDULO"), .isOptional = true}}},
         Command::open},
        {{.noun = QStringLiteral("toggle"), .summary = QStringLiteral("abre ou fecha o painel")},
         Command::toggle},
        {{.noun = QStringLiteral("hide"), .summary = QStringLiteral("oculta o notch")},
         Command::hide},
        {{.noun = QStringLiteral("show"), .summary = QStringLiteral("mostra o notch oculto")},
         Command::show},
        {{.noun = QStringLiteral("drop"),
          .summary = QStringLiteral("solta os arquivos no notch"),
          .arguments =
              {{.name = QStringLiteral("ARQUIVO"), .kind = Kind::file, .isRepeated = true}}},
         Command::drop},
        {{.noun = QStringLiteral("status"), .summary = QStringLiteral("escreve o estado em JSON")},
         Command::status},
        {{.noun = QStringLiteral("watch"),
          .summary = QStringLiteral("escreve uma linha a cada mudança, até Ctrl+C")},
         Watch{}},
        {{.noun = QStringLiteral("quit"), .summary = QStringLiteral("encerra o Orvane")},
         Command::quit},
        {{.noun = QStringLiteral("settings"),
          .summary = QStringLiteral("mostra os ajustes"),
          .arguments = {{.name = QStringLiteral("PÁGINA"), .isOptional = true}}},
         Command::settings},
    };
    return commands;
}

/// What follows the words of a command, taken apart.
struct Line {
    VerbCall call;
    bool asJson = false;
    bool wantsHelp = false;
};

bool isOption(const QString &word)
{
    // A negative number is a bad argument rather than an unknown option.
    return word.size() > 1 && word.startsWith(u'-') && !word[1].isDigit();
}

/// Takes the option at the front of `words` and its value. Throws `VerbUsageError`.
void takeOption(QStringList &words, const VerbSyntax &syntax, Line &line)
{
    const QString word = words.takeFirst();
    const qsizetype sign = word.indexOf(u'=');
    const QString name = word.mid(2, sign < 0 ? -1 : sign - 2);
    if (word == u"--help") {
        line.wantsHelp = true;
        return;
    }
    if (word == u"--json" && syntax.lists()) {
        line.asJson = true;
        return;
    }
    const auto option = std::ranges::find(syntax.options, name, &VerbOption::name);
    if (!word.startsWith(u"--") || option == syntax.options.end())
        throw VerbUsageError(QStringLiteral("Opção desconhecida: %1").arg(word));
    if (sign >= 0 && option->value.isEmpty())
        throw VerbUsageError(QStringLiteral("--%1 não leva valor").arg(name));
    QString value = word.mid(sign + 1);
    if (sign < 0) {
        if (!option->value.isEmpty() && words.isEmpty())
            throw VerbUsageError(
                QStringLiteral("Falta %1 depois de --%2").arg(option->value, name));
        value = option->value.isEmpty() ? QString() : words.takeFirst();
    }
    line.call.options.insert_or_assign(name, value);
}

Line lineOf(QStringList words, const VerbSyntax &syntax)
{
    Line line;
    while (!words.isEmpty()) {
        if (words.first() == u"--") {
            line.call.words += words.mid(1);
            break;
        }
        if (isOption(words.first()))
            takeOption(words, syntax, line);
        else
            line.call.words.append(words.takeFirst());
    }
    return line;
}

/// `words` are those behind the command's.
Request parseCommand(const VerbSyntax &syntax, const QStringList &words, const QString &folder)
{
    const QStringList topic = syntax.command().split(u' ');
    try {
        Line line = lineOf(words, syntax);
        if (line.wantsHelp)
            return Help{topic};
        const auto own = std::ranges::find(ownCommands(), syntax, &OwnCommand::syntax);
        if (own == ownCommands().end())
            return VerbRequest{
                syntax, VerbCheck::checked(syntax.withoutInput(), std::move(line.call), folder),
                line.asJson};
        VerbCheck::checkCount(syntax, line.call.words);
        if (const auto *command = std::get_if<Command>(&own->request))
            return Client{*command, line.call.words};
        return Watch{};
    } catch (const VerbUsageError &error) {
        return Usage{error.description(), topic};
    }
}

Request parseNoun(const QStringList &words, const std::vector<VerbSyntax> &table,
                  const QString &folder)
{
    const QString &noun = words.first();
    const QString second = words.value(1);
    const auto find = [&](const QString &name) {
        return std::ranges::find_if(table, [&](const VerbSyntax &syntax) {
            return syntax.noun == noun && syntax.name == name;
        });
    };
    if (std::ranges::find(table, noun, &VerbSyntax::noun) == table.end())
        return Usage{QStringLiteral("Comando desconhecido: %1").arg(noun)};
    if (second == u"--help")
        return Help{{noun}};
    if (const auto verb = find(second); !second.isEmpty() && verb != table.end())
        return parseCommand(*verb, words.mid(2), folder);
    if (const auto alone = find({}); alone != table.end())
        return parseCommand(*alone, words.mid(1), folder);
    if (second.isEmpty())
        return Usage{QStringLiteral("Falta o que fazer depois de “%1”").arg(noun), {noun}};
    return Usage{QStringLiteral("Comando desconhecido: %1 %2").arg(noun, second), {noun}};
}

/// What was asked by a first word that is an option.
Request parseOption(const QStringList &words)
{
    const QString &first = words.first();
    if (first == u"--")
        return Run{.arguments = {}, .files = words.mid(1)};
    if (first == u"--help")
        return Help{};
    if (first == u"--version")
        return Version{};
    if (first == u"--print-man")
        return Manual{};
    const QString shell = words.value(1);
    if (first == u"--print-completion" && (shell == u"bash" || shell == u"zsh" || shell == u"fish"))
        return Completion{shell};
    return Usage{QStringLiteral("Opção desconhecida: %1").arg(first)};
}

Request parseFiles(const QStringList &words)
{
    const VerbSyntax files{.arguments = {{.kind = VerbArgument::Kind::file, .isRepeated = true}}};
    try {
        const Line line = lineOf(words, files);
        if (line.wantsHelp)
            return Help{};
        return Run{.arguments = {}, .files = line.call.words};
    } catch (const VerbUsageError &error) {
        return Usage{error.description()};
    }
}

} // namespace

std::vector<VerbSyntax> table(const std::vector<VerbSyntax> &verbs)
{
    std::vector<VerbSyntax> all;
    for (const OwnCommand &command : ownCommands())
        all.push_back(command.syntax);
    all.insert(all.end(), verbs.begin(), verbs.end());
    return all;
}

Request parse(const QStringList &words, const std::vector<VerbSyntax> &verbs, const QString &folder)
{
    const auto isProbe = [](const QString &word) { return word.startsWith(u"--probe-"); };
    if (std::ranges::any_of(words, isProbe))
        return Run{.arguments = words, .files = {}};
    if (words.isEmpty())
        return Run{};
    const QString &first = words.first();
    if (first.startsWith(u'-'))
        return parseOption(words);
    if (first.contains(u'/') || first.contains(u'.'))
        return parseFiles(words);
    return parseNoun(words, table(verbs), folder);
}

} // namespace velmo::CommandLine
