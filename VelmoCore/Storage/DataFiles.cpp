#include "VelmoCore/Storage/DataFiles.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>

namespace velmo {

struct DataFiles::Shared {
    enum class Key { awaited, known, abandoned };

    std::mutex mutex; ///< guards the key
    std::condition_variable answered;
    Key key = Key::known;
    std::optional<DataCipher> cipher;

    std::vector<Keeper *> keepers;
    std::vector<std::weak_ptr<const std::function<void()>>> observers;
};

DataFiles::KeyAbandoned::KeyAbandoned()
    : LocalizedError(QStringLiteral("A chave dos dados não chegou a tempo."))
{
}

DataFiles::DataFiles(std::nullopt_t) : m_shared(std::make_shared<Shared>())
{
}

DataFiles::DataFiles(const DataCipher &cipher) : DataFiles(std::optional(cipher))
{
}

DataFiles::DataFiles(const std::optional<DataCipher> &cipher) : m_shared(std::make_shared<Shared>())
{
    m_shared->cipher = cipher;
}

DataFiles DataFiles::awaitingKey()
{
    DataFiles files;
    files.m_shared->key = Shared::Key::awaited;
    return files;
}

DataFiles DataFiles::unsealed() const
{
    DataFiles files = *this;
    files.m_isSealed = false;
    return files;
}

bool DataFiles::isKeyAwaited() const
{
    const std::lock_guard lock(m_shared->mutex);
    return m_isSealed && m_shared->key != Shared::Key::known;
}

std::optional<DataCipher> DataFiles::cipher() const
{
    const std::lock_guard lock(m_shared->mutex);
    return m_isSealed ? m_shared->cipher : std::nullopt;
}

std::optional<DataCipher> DataFiles::waitForCipher() const
{
    std::unique_lock lock(m_shared->mutex);
    m_shared->answered.wait(lock, [this] { return m_shared->key != Shared::Key::awaited; });
    if (m_shared->key == Shared::Key::abandoned)
        throw KeyAbandoned();
    return m_isSealed ? m_shared->cipher : std::nullopt;
}

void DataFiles::setKey(const std::optional<DataCipher> &cipher)
{
    {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->key = Shared::Key::known;
        m_shared->cipher = cipher;
    }
    m_shared->answered.notify_all();
    for (Keeper *keeper : m_shared->keepers)
        keeper->keyCame();
    notify();
}

void DataFiles::abandonKey()
{
    {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->key = Shared::Key::abandoned;
    }
    m_shared->answered.notify_all();
}

void DataFiles::add(Keeper &keeper)
{
    m_shared->keepers.push_back(&keeper);
}

void DataFiles::remove(Keeper &keeper)
{
    std::erase(m_shared->keepers, &keeper);
}

QStringList DataFiles::issues() const
{
    QStringList issues;
    for (const Keeper *keeper : m_shared->keepers)
        issues += keeper->issues();
    issues.removeDuplicates();
    return issues;
}

void DataFiles::dismissIssues()
{
    for (Keeper *keeper : m_shared->keepers)
        keeper->dismissIssues();
}

bool DataFiles::isLoading() const
{
    return std::ranges::any_of(m_shared->keepers, &Keeper::isLoading);
}

bool DataFiles::holdsUnsaved() const
{
    return std::ranges::any_of(m_shared->keepers, &Keeper::holdsUnsaved);
}

void DataFiles::flush()
{
    for (Keeper *keeper : m_shared->keepers)
        keeper->flush();
}

DataFiles::Observation DataFiles::observe(std::function<void()> changed) const
{
    Observation observation = std::make_shared<const std::function<void()>>(std::move(changed));
    m_shared->observers.push_back(observation);
    return observation;
}

void DataFiles::notify() const
{
    const auto shared = m_shared; // an observer may end who holds it
    std::erase_if(shared->observers, [](const auto &observer) { return observer.expired(); });
    for (const auto &observer : std::vector(shared->observers)) {
        if (const auto changed = observer.lock())
            (*changed)();
    }
}

} // namespace velmo
