#pragma once

#include "VelmoSystem/Ports/KeyItemStore.h"

#include <stop_token>

namespace velmo {

/// Secrets in the session's Secret Service (freedesktop Secret Storage API): items of the default
/// collection with the attributes `service` and `account`. Items have no description there.
///
/// Nothing here ever prompts: a locked keyring is a `Refusal`. Each call takes 5 seconds at most,
/// and is a `Refusal` when `stop` ends it.
class SecretServiceItems : public KeyItemStore {
public:
    /// Whether the service runs on the session bus or would be started by a call. Throws
    /// `Refusal` if the bus breaks off.
    static bool isReachable(const std::stop_token &stop = {});
    /// Whether there is a keyring for new items, open or locked. Throws `Refusal`.
    static bool hasDefaultKeyring(const std::stop_token &stop = {});

    explicit SecretServiceItems(const std::stop_token &stop = {}) : m_stop(stop) {}

    Place place() const override { return Place::keyring; }
    std::optional<QByteArray> find(const Item &item) const override;
    /// Two processes that add at the same time are to be kept apart by the caller: the service
    /// itself lets items have the same attributes.
    bool add(const Item &item, const QByteArray &secret) override;
    void remove(const Item &item) override;
    void rename(const Item &item) override;

private:
    std::stop_token m_stop;
};

} // namespace velmo
