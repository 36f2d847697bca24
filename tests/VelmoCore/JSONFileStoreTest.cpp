#include "VelmoCore/Storage/JSONFileStore.h"

#include "VelmoCore/Storage/AtomicFile.h"

#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace velmo {
namespace {

struct Memo {
    QString text;
    bool operator==(const Memo &) const = default;
};
BOOST_DESCRIBE_STRUCT(Memo, (), (text))

using Store = JSONFileStore<Memo>;
using Result = LoadResult<Memo>;

constexpr Date now{1'773'480'413s};
const DataCipher ours(QByteArray(32, 'o'));
const DataCipher theirs(QByteArray(32, 't'));
const Memo memo{"olá"};
const QByteArray good = R"({"text":"olá"})";
const QString quarantined = "notes.corrupt-1773480413.json";

TEST(JSONFileStore, LoadsWhatItCanAndKeepsTheRest)
{
    enum Outcome : std::size_t { loaded, recovered, missing, locked };
    const QByteArray noise = "VLMO1" + QByteArray(100, 'n');
    struct Case {
        const char *name;
        QByteArray file;
        std::optional<DataCipher> cipher;
        Outcome outcome;
    };
    for (const Case &test : {
             Case{"plain, no key", good, {}, loaded},
             Case{"plain, key", good, ours, loaded},
             Case{"sealed, key", ours.seal(good), ours, loaded},
             Case{"sealed, no key", ours.seal(good), {}, locked},
             Case{"sealed, another key", theirs.seal(good), ours, locked},
             Case{"magic alone", "VLMO1", ours, locked},
             Case{"magic and noise", noise, ours, locked},
             Case{"empty", "", ours, recovered},
             Case{"bad JSON, key", "{\"text\":", ours, recovered},
             Case{"another record, no key", R"({"text":1})", {}, recovered},
             Case{"sealed text that isn't the record", ours.seal("[]"), ours, recovered},
         }) {
        SCOPED_TRACE(test.name);
        const TemporaryFolder folder;
        folder.write("notes.json", test.file);
        folder.write(".notes.json.orvane-a1B2c3", "left by a killed save");
        const Result result = Store(folder.path("notes.json"), test.cipher).load(now);
        EXPECT_EQ(result.outcome.index(), test.outcome);
        EXPECT_EQ(result.value(), test.outcome == loaded ? std::optional(memo) : std::nullopt);
        const QString file = test.outcome == recovered ? quarantined : "notes.json";
        ASSERT_EQ(folder.names(), QStringList(file));
        if (test.outcome == loaded && test.cipher)
            EXPECT_EQ(ours.open(folder.read(file)), good);
        else
            EXPECT_EQ(folder.read(file), test.file);
    }
    const TemporaryFolder folder;
    EXPECT_EQ(Store(folder.path("notes.json"), ours).load(now).outcome.index(), missing);
}

TEST(JSONFileStore, TellsOfAFileThatWasSetAsideOrCouldNotBe)
{
    const TemporaryFolder folder;
    const Store store(folder.path("notes.json"), {});
    folder.write("notes.json", "{");
    EXPECT_EQ(store.load(now).issue("Notas"),
              "Notas: os dados salvos estavam ilegíveis e foram isolados em "
              "notes.corrupt-1773480413.json. A lista recomeçou vazia.");
    EXPECT_EQ(store.load(now).issue("Notas"), std::nullopt) << "missing";
    folder.write("notes.json", "[");
    EXPECT_EQ(
        store.load(now).issue("Notas"),
        "Notas: os dados salvos estavam ilegíveis e foram isolados. A lista recomeçou vazia.");
    EXPECT_EQ(folder.read("notes.json"), "[");
    EXPECT_EQ(folder.read(quarantined), "{");
}

TEST(JSONFileStore, SavesOverWhatItCouldHaveReadOnly)
{
    struct Case {
        const char *name;
        std::optional<QByteArray> file;
        std::optional<DataCipher> cipher;
        bool saves;
    };
    for (const Case &test : {
             Case{"new, no key", {}, {}, true},
             Case{"new, key", {}, ours, true},
             Case{"plain, key", "antes", ours, true},
             Case{"sealed, key", ours.seal("antes"), ours, true},
             Case{"sealed, no key", ours.seal("antes"), {}, false},
             Case{"sealed, another key", theirs.seal("antes"), ours, false},
             Case{"sealed and cut", ours.seal("antes").chopped(1), ours, false},
         }) {
        SCOPED_TRACE(test.name);
        const TemporaryFolder folder;
        if (test.file)
            folder.write("notes.json", *test.file);
        const Store store(folder.path("notes.json"), test.cipher);
        if (test.saves) {
            store.save(memo);
            EXPECT_EQ(DataCipher::isSealedFile(store.path()), test.cipher.has_value());
            EXPECT_EQ(store.load(now).value(), memo);
        } else {
            EXPECT_THROW(store.save(memo), ProtectedFile::ProtectedFileError);
            EXPECT_EQ(folder.read("notes.json"), *test.file);
        }
    }
}

TEST(JSONFileStore, TellsOfAFailedSaveOnce)
{
    const ProtectedFile::ProtectedFileError locked;
    const FileError full("/x/notes.json", ENOSPC);
    EXPECT_EQ(Store::saveIssue(locked, "Notas", "já dito"), std::nullopt);
    EXPECT_NE(Store::saveIssue(locked, "Notas", {}), std::nullopt);
    EXPECT_EQ(
        Store::saveIssue(full, "Notas", "já dito"),
        "Notas: não foi possível salvar (Falha em “notes.json”: não há espaço livre no disco.).");
}

} // namespace
} // namespace velmo
