#include "VelmoSystem/Control/CommandLine.h"

#include <gtest/gtest.h>

namespace velmo {

using namespace CommandLine;

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
             {"open notes mail", Usage{"Argumento a mais para “open”: mail"}},
             {"drop a b", Client{Command::drop, {"a", "b"}}},
             {"drop", Usage{"Falta um arquivo depois de “drop”"}},
             {"quit agora", Usage{"Argumento a mais para “quit”: agora"}},
             {"opne", Usage{"Comando desconhecido: opne"}},
             {"toggle --now", Usage{"Opção desconhecida: --now"}},
             {"open --help", Help{}},
             {"--version", Version{}},
         }) {
        const auto words = QString::fromUtf8(each.line).split(u' ', Qt::SkipEmptyParts);
        EXPECT_EQ(parse(words), each.request) << each.line;
    }
}

} // namespace velmo
