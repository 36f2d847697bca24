#pragma once

#include "VelmoCore/Storage/DataCipher.h"

#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace velmo {

/// What the stores' files have in common: the key that they are sealed with, which may come when
/// they exist already, and who keeps them. Copies share it. Main thread only, but for `cipher` and
/// `waitForCipher`.
class DataFiles {
public:
    /// Who keeps a file. Being made is enough: its issues show, it is flushed and gets the key.
    class Keeper {
    public:
        virtual ~Keeper() = default;

        /// Sentences for the user.
        virtual QStringList issues() const = 0;
        virtual void dismissIssues() = 0;
        /// Whether what was kept hasn't been read yet.
        virtual bool isLoading() const = 0;
        /// Whether something waits for the key to be saved.
        virtual bool holdsUnsaved() = 0;
        virtual void keyCame() = 0;
        virtual void flush() = 0;
    };
    /// Ends when the handle goes.
    using Observation = std::shared_ptr<const std::function<void()>>;

    /// Nobody waited long enough to learn the key.
    class KeyAbandoned : public LocalizedError {
    public:
        KeyAbandoned();
    };

    /// Files in plain.
    DataFiles(std::nullopt_t = std::nullopt);
    DataFiles(const DataCipher &cipher);
    DataFiles(const std::optional<DataCipher> &cipher);
    /// Whose key comes later, or doesn't.
    static DataFiles awaitingKey();
    /// The same for a store whose file is always plain.
    DataFiles unsealed() const;

    bool isKeyAwaited() const;
    std::optional<DataCipher> cipher() const;
    /// Returns when there is a key or there will be none: never on the main thread. Throws
    /// `KeyAbandoned` at the end of a run that has no time for it.
    std::optional<DataCipher> waitForCipher() const;

    /// Ends the waiting. A key may also come after its absence.
    void setKey(const std::optional<DataCipher> &cipher);
    /// Ends the waiting of threads. Nothing is read or written any more by who waits for the key.
    void abandonKey();

    void add(Keeper &keeper);
    void remove(Keeper &keeper);
    /// Each once.
    QStringList issues() const;
    void dismissIssues();
    bool isLoading() const;
    bool holdsUnsaved() const;
    /// All of them, in the order in which they were made.
    void flush();

    /// `changed` runs when the key, an issue or a loading has changed.
    Observation observe(std::function<void()> changed) const;
    void notify() const;

private:
    struct Shared;

    std::shared_ptr<Shared> m_shared;
    bool m_isSealed = true;
};

} // namespace velmo
