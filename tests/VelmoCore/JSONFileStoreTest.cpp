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
const QByteArray good = R"({"text":"olá"})";

enum Outcome : std::size_t { loaded, recovered, missing, locked };

TEST(JSONFileStore, LoadsWhatItCanAndKeepsTheRest)
{
    const QByteArray noise = "VLMO1" + QByteArray(100, 'n');
    struct Case {
        const char *name;
        QByteArray file;
        std::optional<DataCipher> cipher;
        Outcome outcome;
    };
    const std::vector<Case> cases = {
        {"plain, no key", good, {}, loaded},
        {"plain, key", good, ours, loaded},
        {"sealed, key", ours.seal(good), ours, loaded},
        {"sealed, no key", ours.seal(good), {}, locked},
        {"sealed, another key", theirs.seal(good), ours, locked},
        {"magic and noise", noise, ours, locked},
        {"magic alone", "VLMO1", ours, locked},
        {"17 bytes", noise.first(17), ours, locked},
        {"32 bytes", noise.first(32), ours, locked},
        {"empty", "", ours, recovered},
        {"bad JSON, key", "{\"text\":", ours, recovered},
        {"another record, no key", R"({"text":1})", {}, recovered},
        {"sealed text that isn't the record", ours.seal("[]"), ours, recovered},
    };
    for (const Case &test : cases) {
        SCOPED_TRACE(test.name);
        const TemporaryFolder folder;
        folder.write("notes.json", test.file);
        const Result result = Store(folder.path("notes.json"), test.cipher).load(now);
        EXPECT_EQ(result.outcome.index(), test.outcome);
        EXPECT_EQ(result.value().has_value(), test.outcome == loaded);
        if (test.outcome == recovered) {
            EXPECT_EQ(folder.names(), QStringList("notes.corrupt-1773480413.json"));
            EXPECT_EQ(folder.read("notes.corrupt-1773480413.json"), test.file);
            EXPECT_EQ(result.issue("Notas"),
                      "Notas: os dados salvos estavam ilegíveis e foram isolados em "
                      "notes.corrupt-1773480413.json. A lista recomeçou vazia.");
        } else if (test.outcome == locked || !test.cipher) {
            EXPECT_EQ(folder.read("notes.json"), test.file);
        } else {
            EXPECT_EQ(ours.open(folder.read("notes.json")), good);
        }
    }
}

TEST(JSONFileStore, GivesMissingWithoutAFile)
{
    const TemporaryFolder folder;
    const Result result = Store(folder.path("notes.json"), ours).load(now);
    EXPECT_EQ(result.outcome.index(), missing);
    EXPECT_EQ(result.issue("Notas"), std::nullopt);
}

TEST(JSONFileStore, LeavesAFileThatCannotBeSetAside)
{
    const TemporaryFolder folder;
    folder.write("notes.json", "{");
    folder.write("notes.corrupt-1773480413.json", "antes");
    EXPECT_EQ(
        Store(folder.path("notes.json"), {}).load(now).issue("Notas"),
        "Notas: os dados salvos estavam ilegíveis e foram isolados. A lista recomeçou vazia.");
    EXPECT_EQ(folder.read("notes.json"), "{");
    EXPECT_EQ(folder.read("notes.corrupt-1773480413.json"), "antes");
}

TEST(JSONFileStore, SavesOverWhatItCouldHaveReadOnly)
{
    const QByteArray broken = ours.seal(good).chopped(1);
    struct Case {
        const char *name;
        std::optional<QByteArray> file;
        std::optional<DataCipher> cipher;
        bool saves;
    };
    const std::vector<Case> cases = {
        {"new, no key", {}, {}, true},
        {"new, key", {}, ours, true},
        {"plain, no key", "antes", {}, true},
        {"plain, key", "antes", ours, true},
        {"sealed, key", ours.seal("antes"), ours, true},
        {"sealed, no key", ours.seal("antes"), {}, false},
        {"sealed, another key", theirs.seal("antes"), ours, false},
        {"sealed and cut", broken, ours, false},
    };
    for (const Case &test : cases) {
        SCOPED_TRACE(test.name);
        const TemporaryFolder folder;
        if (test.file)
            folder.write("notes.json", *test.file);
        const Store store(folder.path("notes.json"), test.cipher);
        if (test.saves) {
            store.save({"olá"});
            EXPECT_EQ(DataCipher::isSealedFile(store.path()), test.cipher.has_value());
            EXPECT_EQ(store.load(now).value(), Memo{"olá"});
        } else {
            EXPECT_THROW(store.save({"olá"}), ProtectedFile::ProtectedFileError);
            EXPECT_EQ(folder.read("notes.json"), *test.file);
        }
        EXPECT_EQ(folder.names(), QStringList("notes.json"));
    }
}

TEST(JSONFileStore, ClearsWhatAKilledSaveLeft)
{
    const TemporaryFolder folder;
    folder.write("notes.json", good);
    folder.write(".notes.json.orvane-a1B2c3", "metade");
    EXPECT_EQ(Store(folder.path("notes.json"), {}).load(now).value(), Memo{"olá"});
    EXPECT_EQ(folder.names(), QStringList("notes.json"));
}

TEST(JSONFileStore, TellsOfAFailedSaveOnce)
{
    const ProtectedFile::ProtectedFileError error;
    EXPECT_EQ(Store::saveIssue(error, "Notas", "já dito"), std::nullopt);
    EXPECT_EQ(Store::saveIssue(error, "Notas", {}),
              "Notas: não foi possível salvar (Os dados estão criptografados e a chave não está "
              "disponível. Nada foi alterado.).");
    EXPECT_EQ(
        Store::saveIssue(FileError("/x/notes.json", EROFS), "Notas", "já dito"),
        "Notas: não foi possível salvar (Falha em “notes.json”: o disco só permite leitura.).");
}

TEST(JSONFileStore, RemovesItsFile)
{
    const TemporaryFolder folder;
    folder.write("notes.json", good);
    folder.write("folder/x", "x");
    const Store store(folder.path("notes.json"), {});
    store.remove();
    EXPECT_NO_THROW(store.remove());
    EXPECT_TRUE(folder.names() == QStringList("folder"));
    EXPECT_THROW(Store(folder.path("folder"), {}).remove(), FileError);
}

} // namespace
} // namespace velmo
