// FETCH answers as a server sends them, each a line with its message as a literal, read one by one.
// `bytes_per_second` counts the bytes of the answers.

#include "VelmoCore/Mail/IMAP/IMAPResponse.h"

#include <benchmark/benchmark.h>

namespace velmo {
namespace {

/// 1,000 answers with messages of `size` bytes.
std::vector<QByteArray> answers(qsizetype size)
{
    const QByteArray line =
        "Received: from mx.example.org (mx.example.org [192.0.2.7]) by mail\r\n";
    const QByteArray message = line.repeated(size / line.size() + 1).first(size);
    std::vector<QByteArray> answers;
    for (int i = 1; i <= 1000; ++i)
        answers.push_back(
            "* " + QByteArray::number(i) + " FETCH (UID " + QByteArray::number(40'000 + i) +
            " FLAGS (\\Seen \\Answered) INTERNALDATE \"17-Jul-2024 09:01:02 -0300\" X-GM-THRID "
            "1278455344230334865 BODY[]<0> {" +
            QByteArray::number(size) + "}\r\n" + message + ")\r\n");
    return answers;
}

void messages(benchmark::State &state)
{
    const auto read = answers(state.range(0));
    std::int64_t bytes = 0;
    for (auto _ : state) {
        for (const QByteArray &answer : read) {
            benchmark::DoNotOptimize(IMAPResponse::fetch(answer));
            bytes += answer.size();
        }
    }
    state.SetBytesProcessed(bytes);
}
BENCHMARK(messages)->Arg(2 << 10)->Arg(8 << 10)->Arg(64 << 10);

/// The answers that say which messages are read, without their text.
void flags(benchmark::State &state)
{
    const QByteArray answer = "* 172 FETCH (UID 40172 FLAGS (\\Seen \\Answered))\r\n";
    for (auto _ : state)
        benchmark::DoNotOptimize(IMAPResponse::fetch(answer));
    state.SetBytesProcessed(state.iterations() * answer.size());
}
BENCHMARK(flags);

} // namespace
} // namespace velmo
