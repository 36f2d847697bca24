#pragma once

#include "VelmoSystem/Ports/KeyItemStore.h"

namespace velmo {

/// The one data key in the system's key store. It is made at most once and never replaced: an item
/// that can't be read is an error, not a reason for a new key.
class KeychainKeyStore {
public:
    /// The item holds something else than 32 bytes.
    class InvalidItem : public LocalizedError {
    public:
        explicit InvalidItem(KeyItemStore::Place place);
    };

    struct Key {
        QByteArray data; ///< 32 bytes
        bool created = false;
    };

    explicit KeychainKeyStore(KeyItemStore &items);

    /// Nothing if there is no key yet. Throws `KeyItemStore::Refusal`, `InvalidItem`.
    std::optional<QByteArray> load() const;
    /// Throws as `load` does.
    Key loadOrCreate();

private:
    KeyItemStore &m_items;
};

} // namespace velmo
