// What a key costs over 2,000 notes of 2 KB: in the search, and in a note that is written.

#include "VelmoCore/Foundation/SystemScheduler.h"
#include "VelmoCore/Notes/NotesStore.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <random>

namespace velmo {
namespace {

constexpr int noteCount = 2000;
constexpr qsizetype noteLength = 2048;

class Notes {
public:
    Notes()
        : store(folder.filePath(QStringLiteral("notes.json")), DataCipher(QByteArray(32, 'k')),
                scheduler)
    {
        const QStringList words =
            QStringLiteral("ação de café para a reunião #plano com João e Márcia às dez em ponto")
                .split(u' ');
        std::mt19937 random(1);
        for (int number = 0; number < noteCount; ++number) {
            QString text;
            while (text.size() < noteLength)
                text += words[qsizetype(random() % std::size_t(words.size()))] + u' ';
            store.createNote(text);
        }
        store.flush();
    }

    QTemporaryDir folder;
    SystemScheduler scheduler;
    NotesStore store;
};

Notes &notes()
{
    static int count = 0;
    static QCoreApplication application(count, nullptr);
    static Notes notes;
    return notes;
}

void search(benchmark::State &state, const QString &query)
{
    for ([[maybe_unused]] const auto &round : state)
        benchmark::DoNotOptimize(notes().store.notes(query, std::nullopt));
}

void typing(benchmark::State &state)
{
    const Note note = notes().store.notes().front();
    QString text = note.text;
    for ([[maybe_unused]] const auto &round : state)
        notes().store.updateNote(note.id, text += u'x');
}

/// The main thread's share of a save.
void save(benchmark::State &state)
{
    for ([[maybe_unused]] const auto &round : state)
        benchmark::DoNotOptimize(NotesStore::Snapshot{notes().store.notes(), {}});
}

BENCHMARK_CAPTURE(search, all, QString())->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(search, letter, QStringLiteral("r"))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(search, word, QStringLiteral("reunião"))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(search, nowhere, QStringLiteral("reunião zz"))->Unit(benchmark::kMillisecond);
BENCHMARK(typing)->Unit(benchmark::kMillisecond);
BENCHMARK(save)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace velmo
