#pragma once

#include "VelmoCore/Storage/DataCipher.h"

#include <optional>

namespace velmo {

/// Reads and writes a file that may be sealed, and never overwrites a sealed file that could not
/// have been read. Without a `cipher` the file is written in plain.
struct ProtectedFile {
    std::optional<DataCipher> cipher;

    struct Contents {
        QByteArray data;
        bool wasPlaintext = false;
    };

    /// The file is sealed and the key isn't at hand.
    class ProtectedFileError : public LocalizedError {
    public:
        ProtectedFileError();
    };

    /// Throws `FileError`, `ProtectedFileError`, `DataCipher::CipherError`.
    Contents read(const QString &path) const;

    /// Throws `ProtectedFileError` over a sealed file that this key doesn't open, and `FileError`,
    /// also where the earlier file's beginning can't be read: it might be sealed. Whatever fails,
    /// the earlier file stands untouched.
    void write(const QByteArray &data, const QString &path) const;

    bool operator==(const ProtectedFile &) const = default;
};

} // namespace velmo
