#include "VelmoSystem/Storage/KeychainKeyStore.h"

#include "VelmoCore/Storage/JSONFileStore.h"
#include "VelmoSystem/Linux/Keys/FileKeyItems.h"
#include "VelmoSystem/Linux/Keys/KeyItemStores.h"
#include "VelmoSystem/Linux/Keys/SecretServiceItems.h"

#include "tests/VelmoSystem/KeyringSession.h"
#include "tests/support/FakeKeyItems.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <atomic>
#include <set>
#include <sys/stat.h>
#include <thread>

namespace velmo {
namespace {

const KeyItemStore::Item item = {"app.test", "conta/1:á", "Rótulo", "Descrição"};
const QString keyName = "app.velmo.Velmo.storage/data-key-v1";
const QString keyFile = "app.velmo.Velmo.storage:data-key-v1";

mode_t modeOf(const QString &path)
{
    struct stat status = {};
    EXPECT_EQ(::lstat(QFile::encodeName(path).constData(), &status), 0);
    return status.st_mode & 07777;
}

/// The environment of a session without any bus.
class NoBus {
public:
    NoBus()
    {
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        qunsetenv("XDG_RUNTIME_DIR");
    }
    ~NoBus()
    {
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_address);
        qputenv("XDG_RUNTIME_DIR", m_runtime);
    }
    Q_DISABLE_COPY_MOVE(NoBus)

private:
    QByteArray m_address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    QByteArray m_runtime = qgetenv("XDG_RUNTIME_DIR");
};

/// What every store of key items has to do, whatever is behind it.
void checkContract(KeyItemStore &items)
{
    const KeyItemStore::Item other = {item.service, "outra", "Outro rótulo", ""};
    const QByteArray secret = QByteArray::fromHex("00ff0d0a20") + "segredo" + QByteArray(20, '\0');
    EXPECT_EQ(items.find(item), std::nullopt);
    EXPECT_TRUE(items.add(item, secret));
    EXPECT_EQ(items.find(item), secret);
    EXPECT_FALSE(items.add(item, "outro segredo"));
    items.rename({item.service, item.account, "Rótulo novo", item.description});
    EXPECT_EQ(items.find(item), secret);
    EXPECT_EQ(items.find(other), std::nullopt);
    EXPECT_TRUE(items.add(other, "x"));
    EXPECT_EQ(items.find(other), "x");
    EXPECT_EQ(items.find(item), secret);

    const KeyItemStore::Item third = {item.service, "mais uma", "Rótulo", ""};
    items.remove(third); // isn't there
    EXPECT_TRUE(items.add(third, "y"));
    items.remove(third);
    EXPECT_EQ(items.find(third), std::nullopt);
    EXPECT_EQ(items.find(other), "x");
}

TEST(KeyItemStore, IsKeptByTheFake)
{
    FakeKeyItems items;
    checkContract(items);
}

TEST(KeyItemStore, IsKeptByPrivateFiles)
{
    const TemporaryFolder folder;
    FileKeyItems items(folder.path("estado/Orvane"));
    checkContract(items);
    EXPECT_TRUE(FileKeyItems(folder.path("estado/Orvane")).find(item).has_value());
    EXPECT_EQ(modeOf(folder.path("estado/Orvane")), 0700U);
    for (const QFileInfo &file : QDir(folder.path("estado/Orvane")).entryInfoList(QDir::Files))
        EXPECT_EQ(modeOf(file.filePath()), 0600U);
}

TEST(KeyItemStore, IsKeptByTheKeyring)
{
    KeyringSession session;
    session.start();
    SecretServiceItems items;
    checkContract(items);
    EXPECT_EQ(session.labels(), QStringList({"Outro rótulo", "Rótulo novo"}));
    session.lock();
    EXPECT_THROW(items.find(item), KeyItemStore::Refusal);
    EXPECT_THROW(items.find({item.service, "terceira", "", ""}), KeyItemStore::Refusal);
    EXPECT_THROW(items.add({item.service, "terceira", "", ""}, "x"), KeyItemStore::Refusal);
}

TEST(KeychainKeyStore, MakesTheKeyOnceAndRenamesTheItem)
{
    FakeKeyItems items;
    KeychainKeyStore store(items);
    EXPECT_EQ(store.load(), std::nullopt);
    const KeychainKeyStore::Key key = store.loadOrCreate();
    EXPECT_TRUE(key.created);
    EXPECT_EQ(key.data.size(), 32);
    items.entries.at(keyName).label = "antigo";
    const KeychainKeyStore::Key again = store.loadOrCreate();
    EXPECT_FALSE(again.created);
    EXPECT_EQ(again.data, key.data);
    EXPECT_EQ(items.entries.at(keyName).label, "Orvane — chave dos dados");
}

TEST(KeychainKeyStore, MakesNoKeyOverWhatItCannotRead)
{
    FakeKeyItems items;
    KeychainKeyStore store(items);
    items.refusal.emplace(-25308, QString());
    try {
        store.loadOrCreate();
        ADD_FAILURE();
    } catch (const KeyItemStore::Refusal &refusal) {
        EXPECT_EQ(refusal.description(), "Erro do chaveiro -25308.");
    }
    items.refusal.reset();
    for (const qsizetype length : {0, 31, 33}) {
        items.entries[keyName] = {QByteArray(length, 'k'), {}};
        EXPECT_THROW(store.loadOrCreate(), KeychainKeyStore::InvalidItem);
        EXPECT_EQ(items.entries.at(keyName).secret.size(), length);
    }
    EXPECT_EQ(items.addCount, 0);
}

TEST(KeychainKeyStore, TakesTheKeyOfAFasterProcess)
{
    FakeKeyItems items;
    KeychainKeyStore store(items);
    items.rival = {QByteArray(32, 'r'), {}};
    const KeychainKeyStore::Key key = store.loadOrCreate();
    EXPECT_FALSE(key.created);
    EXPECT_EQ(key.data, items.rival->secret);

    FakeKeyItems hidden;
    hidden.isTaken = true;
    try {
        KeychainKeyStore(hidden).loadOrCreate();
        ADD_FAILURE();
    } catch (const KeyItemStore::Refusal &refusal) {
        EXPECT_EQ(refusal.status(), -25299);
    }
}

TEST(KeyItemStores, StayWithPrivateFilesWhenAKeyringAppears)
{
    const TemporaryFolder folder;
    QByteArray key;
    {
        const NoBus noBus;
        KeyItemStores items(folder.path("Orvane"));
        key = KeychainKeyStore(items).loadOrCreate().data;
        EXPECT_EQ(folder.read("Orvane/" + keyFile), key);
    }
    KeyringSession session;
    session.start();
    for (const bool isRemembered : {true, false}) {
        if (!isRemembered)
            QFile::remove(folder.path("Orvane/key-store"));
        KeyItemStores items(folder.path("Orvane"));
        EXPECT_EQ(KeychainKeyStore(items).loadOrCreate().data, key);
        EXPECT_EQ(folder.read("Orvane/key-store"), "private-files\n");
        EXPECT_EQ(items.place(), KeyItemStore::Place::privateFile);
    }
}

TEST(KeyItemStores, TakePrivateFilesWhereTheKeyringHasNoCollection)
{
    const TemporaryFolder folder;
    KeyringSession session;
    session.start({});
    KeyItemStores items(folder.path("Orvane"));
    const QByteArray key = KeychainKeyStore(items).loadOrCreate().data;
    session.kill();
    session.start();
    EXPECT_EQ(KeychainKeyStore(items).loadOrCreate().data, key);
}

TEST(KeyItemStores, GiveNoKeyWhenTheKeyringIsLockedOrGone)
{
    const TemporaryFolder folder;
    KeyringSession session;
    session.start();
    KeyItemStores items(folder.path("Orvane"));
    KeychainKeyStore store(items);
    const QByteArray key = store.loadOrCreate().data;
    EXPECT_EQ(items.place(), KeyItemStore::Place::keyring);
    using Strings = std::vector<QString>;
    JSONFileStore<Strings>(folder.path("notes.json"), DataCipher(key)).save({"segredo"});
    const QByteArray sealed = folder.read("notes.json");

    const auto checkRefused = [&] {
        EXPECT_THROW(store.loadOrCreate(), KeyItemStore::Refusal);
        EXPECT_EQ(QDir(folder.path("Orvane")).entryList(QDir::Files), QStringList("key-store"));
        const JSONFileStore<Strings> keyless(folder.path("notes.json"), {});
        EXPECT_TRUE(keyless.load(Date{0s}).issue("Notas").has_value());
        EXPECT_THROW(keyless.save({"outro"}), ProtectedFile::ProtectedFileError);
        EXPECT_EQ(folder.read("notes.json"), sealed);
        EXPECT_EQ(folder.names(), QStringList({"Orvane", "notes.json"}));
    };
    session.lock();
    checkRefused();
    session.kill();
    checkRefused();
    {
        const NoBus noBus;
        checkRefused();
    }
    session.start();
    const KeychainKeyStore::Key again = store.loadOrCreate();
    EXPECT_FALSE(again.created);
    EXPECT_EQ(again.data, key);
}

TEST(KeyItemStores, MakeNoSecondKeyAfterABrokenWrite)
{
    const NoBus noBus;
    for (const QByteArray choice : {"", "private-fi", "secret-service", "\n"}) {
        const TemporaryFolder folder;
        folder.write("key-store", choice);
        KeyItemStores items(folder.path());
        EXPECT_THROW(KeychainKeyStore(items).loadOrCreate(), KeyItemStore::Refusal);
        EXPECT_EQ(folder.names(), QStringList("key-store"));
    }
    const TemporaryFolder folder;
    folder.write(keyFile, "metade");
    KeyItemStores items(folder.path());
    EXPECT_THROW(KeychainKeyStore(items).loadOrCreate(), KeychainKeyStore::InvalidItem);
    EXPECT_EQ(folder.read(keyFile), "metade");
}

TEST(KeyItemStores, MakeOneKeyForAllWhoStartAtOnce)
{
    KeyringSession session;
    session.start();
    const TemporaryFolder folder;
    std::mutex mutex;
    std::set<QByteArray> keys;
    int created = 0;
    {
        std::vector<std::jthread> starts(8);
        for (std::jthread &start : starts)
            start = std::jthread([&] {
                KeyItemStores items(folder.path("Orvane"));
                const KeychainKeyStore::Key key = KeychainKeyStore(items).loadOrCreate();
                const std::lock_guard lock(mutex);
                keys.insert(key.data);
                created += key.created;
            });
    }
    EXPECT_EQ(keys.size(), 1U);
    EXPECT_EQ(created, 1);
}

} // namespace
} // namespace velmo
