#include "VelmoSystem/Control/CommandLine.h"

#include "VelmoSystem/Control/CommandCompletion.h"
#include "VelmoSystem/Control/CommandHelp.h"
#include "VelmoSystem/Control/RecordTable.h"

#include "tests/support/Printers.h"

#include <QJsonObject>
#include <QProcess>

#include <gtest/gtest.h>

namespace velmo {

using namespace CommandLine;

namespace {

using Kind = VerbArgument::Kind;

const VerbSyntax list{
    .noun = "clip", .name = "list", .columns = {{"number", "Nº"}, {"text", "Texto"}}};
const VerbSyntax show{.noun = "clip", .name = "show", .arguments = {{"N", Kind::number}}};
const VerbSyntax add{.noun = "clip",
                     .name = "add",
                     .arguments = {{.name = "TEXTO", .isRepeated = true}},
                     .options = {{.name = "pin"}}};
const VerbSyntax zip{
    .noun = "files",
    .name = "zip",
    .arguments = {{.name = "ARQUIVO", .kind = Kind::file, .isRepeated = true}},
    .options = {{"level", "NÍVEL", "como", {"fast", "best"}}, {"to", "PASTA", "", {}, Kind::file}}};
const VerbSyntax get{.noun = "settings", .name = "get", .arguments = {{.name = "CHAVE"}}};
const std::vector<VerbSyntax> verbs{list, show, add, zip, get};

Request parsed(const char *line)
{
    return parse(QString::fromUtf8(line).split(u' ', Qt::SkipEmptyParts), verbs, "/home/ana");
}

} // namespace

TEST(CommandLine, TellsCommandsFilesFlagsAndMistakesApart)
{
    struct Case {
        const char *line;
        Request request;
    };
    for (const Case &each : std::initializer_list<Case>{
             {"", CommandLine::Run{}},
             {"--probe-open 3", CommandLine::Run{{"--probe-open", "3"}, {}}},
             {"--probe-trust /tmp/a --other",
              CommandLine::Run{{"--probe-trust", "/tmp/a", "--other"}, {}}},
             {"/tmp/a file:///tmp/b%20c", CommandLine::Run{{}, {"/tmp/a", "file:///tmp/b%20c"}}},
             {"foto.png toggle", CommandLine::Run{{}, {"foto.png", "toggle"}}},
             {"open notes", Client{Command::open, {"notes"}}},
             {"-- -foto", CommandLine::Run{{}, {"-foto"}}},
             {"open notes mail", Usage{"Argumento a mais para “open”: mail", {"open"}}},
             {"drop a b", Client{Command::drop, {"a", "b"}}},
             {"drop", Usage{"Falta um arquivo depois de “drop”", {"drop"}}},
             {"quit agora", Usage{"Argumento a mais para “quit”: agora", {"quit"}}},
             {"opne", Usage{"Comando desconhecido: opne"}},
             {"toggle --now", Usage{"Opção desconhecida: --now", {"toggle"}}},
             {"open --help", Help{{"open"}}},
             {"--version", Version{}},
         }) {
        EXPECT_TRUE(parsed(each.line) == each.request) << each.line;
    }
}

TEST(CommandLine, HoldsVerbsAgainstTheirSyntax)
{
    const QString file = "/home/ana/foto 1.png";
    const struct {
        const char *line;
        Request request;
    } cases[] = {
        {"clip list", VerbRequest{list, {}}},
        {"clip list --json", VerbRequest{list, {}, true}},
        {"clip show 07", VerbRequest{show, {{"07"}, {}}}},
        {"clip add a b", VerbRequest{add, {{"a", "b"}, {}}}},
        {"clip add --pin -- --pin -x", VerbRequest{add, {{"--pin", "-x"}, {{"pin", ""}}}}},
        {"clip add - -1", VerbRequest{add, {{"-", "-1"}, {}}}},
        {"files zip ../b a/ --level best file:///c%20d",
         VerbRequest{zip, {{"/home/b", "/home/ana/a", "/c d"}, {{"level", "best"}}}}},
        {"files zip a --level=fast --to b",
         VerbRequest{zip, {{"/home/ana/a"}, {{"level", "fast"}, {"to", "/home/ana/b"}}}}},
        {"settings get theme", VerbRequest{get, {{"theme"}, {}}}},
        {"settings about", Client{Command::settings, {"about"}}},
        {"watch", Watch{}},
        {"clip --help", Help{{"clip"}}},
        {"clip show --help", Help{{"clip", "show"}}},
        {"clip", Usage{"Falta o que fazer depois de “clip”", {"clip"}}},
        {"clip eat", Usage{"Comando desconhecido: clip eat", {"clip"}}},
        {"clip show", Usage{"Falta um número depois de “clip show”", {"clip", "show"}}},
        {"clip show 0", Usage{"N é um número a partir de 1, não “0”", {"clip", "show"}}},
        {"clip show -3", Usage{"N é um número a partir de 1, não “-3”", {"clip", "show"}}},
        {"clip show 2x", Usage{"N é um número a partir de 1, não “2x”", {"clip", "show"}}},
        {"clip show 9876543210", Usage{"O número é grande demais: 9876543210", {"clip", "show"}}},
        {"clip show 1 2", Usage{"Argumento a mais para “clip show”: 2", {"clip", "show"}}},
        {"clip add", Usage{"Falta TEXTO depois de “clip add”", {"clip", "add"}}},
        {"clip add a --json", Usage{"Opção desconhecida: --json", {"clip", "add"}}},
        {"clip add a --pin=1", Usage{"--pin não leva valor", {"clip", "add"}}},
        {"files zip a --level", Usage{"Falta NÍVEL depois de --level", {"files", "zip"}}},
        {"files zip a --level top",
         Usage{"--level não pode ser “top”, só um destes: fast, best", {"files", "zip"}}},
        {"files zip file://other/a",
         Usage{"Não é um arquivo deste computador: file://other/a", {"files", "zip"}}},
    };
    for (const auto &[line, request] : cases)
        EXPECT_TRUE(parsed(line) == request) << line;
    EXPECT_TRUE(parse({"files", "zip", "foto 1.png"}, verbs, "/home/ana") ==
                Request(VerbRequest{zip, {{file}, {}}}));
    EXPECT_TRUE(parse({"files", "zip", ""}, verbs, "/home/ana") ==
                Request(Usage{"O nome de um arquivo está vazio", {"files", "zip"}}));
}

TEST(CommandLine, ExplainsEveryCommandFromOneTable)
{
    const auto all = table(verbs);
    for (const VerbSyntax &syntax : all) {
        const QString usage = CommandHelp::usage(syntax);
        EXPECT_TRUE(CommandHelp::text(all, {}).contains(usage)) << qPrintable(usage);
        EXPECT_TRUE(CommandHelp::manual(all, "1").contains(QString(usage).replace("-", "\\-")));
        EXPECT_TRUE(CommandHelp::text(all, syntax.command().split(' ')).contains(usage));
    }
    EXPECT_EQ(CommandHelp::usage(zip), "files zip ARQUIVO… [--level NÍVEL] [--to PASTA]");
    EXPECT_TRUE(CommandHelp::text(all, {"files", "zip"}).contains("como (fast, best)"));
}

TEST(CommandLine, CompletesInBash)
{
    QProcess bash;
    const auto completed = [&](const QByteArray &line) {
        const auto count = QByteArray::number(line.count(' '));
        bash.start("bash", {"--norc", "-c",
                            CommandCompletion::script(table(verbs), "bash") +
                                "cd /usr; COMP_WORDS=(" + line + " ''); COMP_CWORD=" + count +
                                "; COMP_WORDS[COMP_CWORD]=\"$0\"; _orvane; echo ${COMPREPLY[*]}",
                            line.mid(line.lastIndexOf(' ') + 1)});
        bash.waitForFinished();
        return QString::fromUtf8(bash.readAll() + bash.readAllStandardError()).trimmed();
    };
    EXPECT_EQ(completed("orvane cl"), "clip");
    EXPECT_EQ(completed("orvane clip "), "list show add");
    EXPECT_EQ(completed("orvane clip list --"), "--json --help");
    EXPECT_EQ(completed("orvane settings g"), "get");
    EXPECT_EQ(completed("orvane files zip shar"), "share");
    EXPECT_EQ(completed("orvane files zip --level "), "fast best");
    EXPECT_EQ(completed("orvane files zip --to shar"), "share");
    EXPECT_EQ(completed("orvane toggle "), "");
}

TEST(RecordTable, FitsItsColumnsIntoTheTerminal)
{
    const QJsonArray records{QJsonObject{{"number", 1}, {"text", "um\ttexto que não cabe aqui"}},
                             QJsonObject{{"number", 10}}, QJsonObject{{"text", "ação\033[2J"}}};
    EXPECT_EQ(RecordTable::aligned(list.columns, records, 20), "Nº  Texto\n"
                                                               "1   um texto que nã…\n"
                                                               "10\n"
                                                               "    ação [2J\n");
    EXPECT_EQ(RecordTable::separated(list.columns, records),
              "1\tum texto que não cabe aqui\n10\t\n\tação [2J\n");
    EXPECT_EQ(RecordTable::aligned(list.columns, {}, 20), "");
}

} // namespace velmo
