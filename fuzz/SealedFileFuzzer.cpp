#include "VelmoCore/Storage/AtomicFile.h"
#include "VelmoCore/Storage/JSONFileStore.h"

#include <QFile>
#include <QTemporaryDir>

#include <cstdlib>
#include <map>

namespace velmo {
namespace {

using Record = std::map<QString, QString>;
using Store = JSONFileStore<Record>;
constexpr std::size_t recovered = 1;
constexpr std::size_t locked = 3;

void require(bool condition)
{
    if (!condition)
        std::abort();
}

const DataCipher &cipher()
{
    static const DataCipher cipher(QByteArray(32, 'k'));
    return cipher;
}

/// Foreign bytes open, or fail with the reason that their beginning tells.
void checkCipher(const QByteArray &data)
{
    using Reason = DataCipher::CipherError::Reason;
    try {
        require(cipher().open(data).size() == data.size() - DataCipher::overhead);
    } catch (const DataCipher::CipherError &error) {
        require(error.reason() ==
                (DataCipher::isSealed(data) ? Reason::unreadable : Reason::notSealed));
    }
    require(cipher().open(cipher().seal(data)) == data);
}

void overwrite(const QString &path, const QByteArray &data)
{
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(data) == data.size());
}

/// Whatever stands in a store's file, none of its bytes are lost.
void checkStore(const QString &folder, const QByteArray &data)
{
    const Store store(folder + "/notes.json", cipher());
    overwrite(store.path(), data);
    const auto result = store.load(Date{0s});
    if (result.outcome.index() == locked) {
        require(AtomicFile::read(store.path()) == data);
        return;
    }
    if (result.outcome.index() == recovered) {
        require(AtomicFile::read(folder + "/notes.corrupt-0.json") == data);
        require(QFile::remove(folder + "/notes.corrupt-0.json"));
        return;
    }
    require(DataCipher::isSealedFile(store.path()));
    require(store.load(Date{0s}).value() == result.value());
}

} // namespace
} // namespace velmo

/// The first byte tells whether the rest stands in the file as it is or well sealed.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace velmo;
    static const QTemporaryDir folder;
    static const bool isQuiet = (qputenv("QT_LOGGING_RULES", "*=false"), true);
    if (size == 0 || !isQuiet)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char *>(data + 1),
                           static_cast<qsizetype>(size - 1));
    checkCipher(bytes);
    checkStore(folder.path(), data[0] % 2 == 0 ? bytes : cipher().seal(bytes));
    return 0;
}
