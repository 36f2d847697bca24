#pragma once

#include "VelmoCore/Storage/DataCipher.h"
#include "VelmoSystem/Ports/KeyItemStore.h"

#include <optional>
#include <variant>

namespace velmo {

/// How files are protected for this run. Worked out once; after unlocking the key store the user
/// restarts.
struct DataProtectionStatus {
    struct Enabled {
        DataCipher cipher;
        bool keyCreated = false; ///< true on the run that made the key
    };
    /// The key store refused; files that are sealed already stay closed and untouched.
    struct Unavailable {
        QString message;
    };
    /// For self-tests only.
    struct Disabled {};

    /// What the settings show of it.
    struct Presentation {
        QString symbol;
        QString title;
        std::optional<QString> text;
    };

    std::variant<Enabled, Unavailable, Disabled> value;

    /// Reads the key, or makes it on the first run of all. Never fails: a refusal is logged and
    /// gives `Unavailable`.
    static DataProtectionStatus fromKeychain(KeyItemStore &items);

    std::optional<DataCipher> cipher() const;
    Presentation presentation() const;
};

} // namespace velmo
