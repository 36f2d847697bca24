#include "VelmoSystem/Linux/Keys/KeyItemStores.h"

#include "VelmoCore/Storage/AppPaths.h"
#include "VelmoCore/Storage/AtomicFile.h"
#include "VelmoSystem/Linux/Keys/FileKeyItems.h"
#include "VelmoSystem/Linux/Keys/SecretServiceItems.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace velmo {
namespace {

constexpr qint64 longestChoice = 64;
const QByteArray serviceChoice = "secret-service\n";
const QByteArray filesChoice = "private-files\n";

KeyItemStore::Refusal refusal(const FileError &error)
{
    return {error.code(), error.description()};
}

/// Held while an item is made: two processes must not both find none.
class FolderLock {
public:
    explicit FolderLock(const QString &folder)
        : m_folder(
              ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
        if (m_folder < 0)
            throw FileError(folder, errno);
        while (::flock(m_folder, LOCK_EX) != 0) {
            if (errno != EINTR)
                throw FileError(folder, errno);
        }
    }
    ~FolderLock() { ::close(m_folder); }
    Q_DISABLE_COPY_MOVE(FolderLock)

private:
    int m_folder;
};

} // namespace

QString KeyItemStores::standardFolder()
{
    return AppPaths::baseDirectory("XDG_STATE_HOME", QStringLiteral(".local/state")) +
           QStringLiteral("/Orvane");
}

KeyItemStores::KeyItemStores(const QString &folder, const std::stop_token &stop)
    : m_folder(folder), m_stop(stop), m_files(std::make_unique<FileKeyItems>(folder)),
      m_service(std::make_unique<SecretServiceItems>(stop))
{
}

KeyItemStore::Place KeyItemStores::place() const
try {
    return store(remembered().value_or(Kind::secretService)).place();
} catch (const Refusal &) {
    return Place::keyring; // whoever looks for the key gets the error
}

std::optional<QByteArray> KeyItemStores::find(const Item &item) const
{
    const std::optional<Kind> before = remembered();
    const Kind kind = choose(item, before);
    std::optional<QByteArray> secret = store(kind).find(item);
    if (secret && !before)
        remember(kind);
    return secret;
}

bool KeyItemStores::add(const Item &item, const QByteArray &secret)
try {
    AtomicFile::makeDirectory(m_folder);
    const FolderLock lock(m_folder);
    const std::optional<Kind> before = remembered();
    const Kind kind = choose(item, before);
    if (!before)
        remember(kind);
    return store(kind).add(item, secret);
} catch (const FileError &error) {
    throw refusal(error);
}

void KeyItemStores::remove(const Item &item)
{
    store(choose(item, remembered())).remove(item);
}

void KeyItemStores::rename(const Item &item)
{
    store(choose(item, remembered())).rename(item);
}

QString KeyItemStores::choicePath() const
{
    return m_folder + QStringLiteral("/key-store");
}

std::optional<KeyItemStores::Kind> KeyItemStores::remembered() const
{
    QByteArray choice;
    try {
        choice = AtomicFile::read(choicePath(), longestChoice);
    } catch (const FileError &error) {
        if (error.code() == ENOENT)
            return std::nullopt;
        throw refusal(error);
    }
    if (choice == serviceChoice)
        return Kind::secretService;
    if (choice == filesChoice)
        return Kind::privateFiles;
    throw Refusal(notAvailable,
                  QStringLiteral("“%1” não diz onde a chave foi guardada.").arg(choicePath()));
}

void KeyItemStores::remember(Kind kind) const
try {
    AtomicFile::removeStrays(choicePath());
    AtomicFile::write(kind == Kind::secretService ? serviceChoice : filesChoice, choicePath());
} catch (const FileError &error) {
    throw refusal(error);
}

KeyItemStores::Kind KeyItemStores::choose(const Item &item, std::optional<Kind> remembered) const
{
    if (remembered == Kind::privateFiles || (!remembered && m_files->find(item)))
        return Kind::privateFiles;
    const bool isReachable = SecretServiceItems::isReachable(m_stop);
    if (!remembered && !(isReachable && SecretServiceItems::hasDefaultKeyring(m_stop)))
        return Kind::privateFiles;
    if (!isReachable)
        throw Refusal(
            notAvailable,
            QStringLiteral("O %1, que guarda a chave, não está em execução.").arg(name(place())));
    return Kind::secretService;
}

KeyItemStore &KeyItemStores::store(Kind kind) const
{
    return kind == Kind::secretService ? *m_service : *m_files;
}

} // namespace velmo
