#pragma once

#include "VelmoCore/Storage/DataFiles.h"
#include "VelmoSystem/Ports/KeyItemStore.h"

#include <optional>
#include <variant>

namespace velmo {

/// How files are protected in this run. A key that comes late is taken all the same.
struct DataProtectionStatus {
    struct Enabled {
        DataCipher cipher;
        bool keyCreated = false; ///< true on the run that made the key
        KeyItemStore::Place place = KeyItemStore::Place::keyring; ///< what holds the key
    };
    /// The key store refused; files that are sealed already stay closed and untouched.
    struct Unavailable {
        QString message;
        KeyItemStore::Place place = KeyItemStore::Place::keyring;
    };
    /// The key store hasn't answered yet.
    struct Awaited {};
    /// For self-tests only.
    struct Disabled {};

    /// What the settings show of it.
    struct Presentation {
        QString symbol;
        QString title;
        std::optional<QString> text;
        std::optional<QString> note; ///< what protection doesn't do
    };

    std::variant<Enabled, Unavailable, Awaited, Disabled> value;

    /// Reads the key, or makes it on the first run of all. Never fails: a refusal is logged and
    /// gives `Unavailable`.
    static DataProtectionStatus fromKeychain(KeyItemStore &items);

    std::optional<DataCipher> cipher() const;
    bool isAwaited() const { return std::holds_alternative<Awaited>(value); }
    DataFiles files() const { return isAwaited() ? DataFiles::awaitingKey() : DataFiles(cipher()); }
    Presentation presentation() const;
};

} // namespace velmo
