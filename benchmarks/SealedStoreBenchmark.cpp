#include "VelmoCore/Storage/AtomicFile.h"
#include "VelmoCore/Storage/JSONFileStore.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <vector>

/// Saving and loading a record of some 20 MB of text, whole and by its shares: codec, cipher, disk.
namespace velmo {
namespace {

struct Clip {
    Uuid id;
    QString text;
    Date date;
    bool isPinned = false;

    bool operator==(const Clip &) const = default;
};
BOOST_DESCRIBE_STRUCT(Clip, (), (id, text, date, isPinned))

using Clips = std::vector<Clip>;
using Store = JSONFileStore<Clips>;

const Clips &clips()
{
    static const Clips clips = [] {
        Clips result(20'000);
        for (std::size_t i = 0; i < result.size(); ++i)
            result[i] = {Uuid(static_cast<uint>(i), 0, 0, 0, 0, 0, 0, 0, 0, 0, 0),
                         QString("Uma linha copiada, com acentuação e “aspas”.\n").repeated(20),
                         Date{Seconds(static_cast<double>(1'773'480'413 + i))}, i % 50 == 0};
        return result;
    }();
    return clips;
}

const QByteArray &text()
{
    static const QByteArray text = Json::encode(clips());
    return text;
}

const DataCipher &cipher()
{
    static const DataCipher cipher(DataCipher::generateKeyData());
    return cipher;
}

void count(benchmark::State &state)
{
    state.SetBytesProcessed(state.iterations() * text().size());
}

/// Times `body` once a round, on a record that is there before the clock starts.
template <class Body>
void measure(benchmark::State &state, Body body)
{
    text();
    for (auto round : state)
        benchmark::DoNotOptimize(body());
    count(state);
}

void copy(benchmark::State &state)
{
    measure(state, [] { return QByteArray(text().constData(), text().size()); });
}

void encode(benchmark::State &state)
{
    measure(state, [] { return Json::encode(clips()); });
}

void decode(benchmark::State &state)
{
    measure(state, [] { return Json::decode<Clips>(text()); });
}

void seal(benchmark::State &state)
{
    measure(state, [] { return cipher().seal(text()); });
}

void open(benchmark::State &state)
{
    const QByteArray sealed = cipher().seal(text());
    measure(state, [&] { return cipher().open(sealed); });
}

void writeFile(benchmark::State &state)
{
    const QTemporaryDir folder;
    measure(state, [&] {
        AtomicFile::write(text(), folder.filePath("clipboard.json"));
        return 0;
    });
}

void readFile(benchmark::State &state)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("clipboard.json");
    AtomicFile::write(text(), path);
    measure(state, [&] { return AtomicFile::read(path); });
}

/// Over a sealed file, which is read and opened first to prove the key.
void save(benchmark::State &state)
{
    const QTemporaryDir folder;
    const Store store(folder.filePath("clipboard.json"), cipher());
    store.save(clips());
    measure(state, [&] {
        store.save(clips());
        return 0;
    });
}

void load(benchmark::State &state)
{
    const QTemporaryDir folder;
    const Store store(folder.filePath("clipboard.json"), cipher());
    store.save(clips());
    measure(state, [&] { return store.load(Date{0s}); });
}

BENCHMARK(copy)->Unit(benchmark::kMillisecond);
BENCHMARK(encode)->Unit(benchmark::kMillisecond);
BENCHMARK(seal)->Unit(benchmark::kMillisecond);
BENCHMARK(writeFile)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(save)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(readFile)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(open)->Unit(benchmark::kMillisecond);
BENCHMARK(decode)->Unit(benchmark::kMillisecond);
BENCHMARK(load)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
} // namespace velmo
