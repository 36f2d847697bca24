#include "VelmoSystem/Control/CommandLine.h"

#include <algorithm>
#include <array>
#include <limits>

namespace velmo::CommandLine {

namespace {

struct Syntax {
    const char *name;
    Command command;
    qsizetype fewest;
    qsizetype most;
};

constexpr auto unlimited = std::numeric_limits<qsizetype>::max();
constexpr std::array commands{
    Syntax{"open", Command::open, 0, 1},         Syntax{"toggle", Command::toggle, 0, 0},
    Syntax{"hide", Command::hide, 0, 0},         Syntax{"show", Command::show, 0, 0},
    Syntax{"settings", Command::settings, 0, 1}, Syntax{"drop", Command::drop, 1, unlimited},
    Syntax{"status", Command::status, 0, 0},     Syntax{"quit", Command::quit, 0, 0},
};

Request parseWords(const QStringList &words)
{
    if (words.isEmpty())
        return Run{};
    const QString &name = words.first();
    if (name.contains(u'/') || name.contains(u'.'))
        return Run{.arguments = {}, .files = words};

    const auto syntax = std::ranges::find_if(
        commands, [&](const Syntax &each) { return name == QLatin1String(each.name); });
    if (syntax == commands.end())
        return Usage{QStringLiteral("Comando desconhecido: %1").arg(name)};
    const QStringList arguments = words.mid(1);
    if (arguments.size() < syntax->fewest)
        return Usage{QStringLiteral("Falta um arquivo depois de “%1”").arg(name)};
    if (arguments.size() > syntax->most)
        return Usage{
            QStringLiteral("Argumento a mais para “%1”: %2").arg(name, arguments[syntax->most])};
    return Client{syntax->command, arguments};
}

} // namespace

Request parse(const QStringList &words)
{
    const auto isProbe = [](const QString &word) { return word.startsWith(u"--probe-"); };
    if (std::ranges::any_of(words, isProbe))
        return Run{.arguments = words, .files = {}};

    for (const QString &word : words) {
        if (word == u"--help")
            return Help{};
        if (word == u"--version")
            return Version{};
        if (word.startsWith(u'-'))
            return Usage{QStringLiteral("Opção desconhecida: %1").arg(word)};
    }
    return parseWords(words);
}

QString usage()
{
    return QStringLiteral(R"(Uso: orvane [ARQUIVO…]
     orvane COMANDO

Sem comando, inicia o Orvane. Se ele já está em execução, entrega-lhe os arquivos
ou, sem arquivos, mostra os ajustes.

Comandos para o Orvane em execução:
  open [MÓDULO]   abre o painel, no módulo pedido ou no último
  toggle          abre ou fecha o painel
  hide            oculta o notch
  show            mostra o notch oculto
  settings [PÁGINA]
                  mostra os ajustes
  drop ARQUIVO…   solta os arquivos no notch
  status          escreve o estado em JSON
  quit            encerra o Orvane

Opções:
  --help          mostra esta ajuda
  --version       mostra a versão
)");
}

} // namespace velmo::CommandLine
