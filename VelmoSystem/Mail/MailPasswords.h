#pragma once

#include "VelmoCore/Foundation/Uuid.h"
#include "VelmoSystem/Ports/KeyItemStore.h"

/// The passwords of mail accounts in the key store. All of it may take seconds.
namespace velmo::MailPasswords {

/// Replaces an older one. Throws `KeyItemStore::Refusal`.
void save(KeyItemStore &items, const Uuid &account, const QString &password);
/// Nothing where there is none, or none that is a text. Throws `KeyItemStore::Refusal`.
std::optional<QString> read(const KeyItemStore &items, const Uuid &account);
/// Throws `KeyItemStore::Refusal`.
void remove(KeyItemStore &items, const Uuid &account);

} // namespace velmo::MailPasswords
