#pragma once

#include "VelmoCore/Foundation/LocalizedError.h"

#include <QByteArray>
#include <QString>

#include <array>

namespace velmo {

/// The sealed container: AES-256-GCM (NIST SP 800-38D) under one 32-byte key.
///
/// magic "VLMO1" (5 bytes), nonce (12, random for each seal), ciphertext (as long as the
/// plaintext), tag (16). No additional authenticated data.
class DataCipher {
public:
    static constexpr std::array<char, 5> magic = {'V', 'L', 'M', 'O', '1'};
    static constexpr qsizetype keyLength = 32;
    /// How many bytes a sealed text is longer than its plaintext.
    static constexpr qsizetype overhead = 33;

    class CipherError;
    /// The cryptography library itself failed.
    class LibraryError : public LocalizedError {
    public:
        using LocalizedError::LocalizedError;
    };

    /// Throws `CipherError::invalidKey` unless the key has exactly `keyLength` bytes.
    explicit DataCipher(const QByteArray &keyData);

    /// 256 random bits from a cryptographic source. Throws `LibraryError` if there is none.
    static QByteArray generateKeyData();

    static bool isSealed(const QByteArray &data);
    /// Reads the first 5 bytes only. False for whatever can't be opened or read.
    static bool isSealedFile(const QString &path);

    /// Throws `LibraryError`.
    QByteArray seal(const QByteArray &data) const;
    /// Throws `CipherError`: `notSealed` without the magic, `unreadable` for all that follows.
    QByteArray open(const QByteArray &data) const;

    const QByteArray &keyData() const { return m_keyData; }
    bool operator==(const DataCipher &) const = default;

private:
    QByteArray m_keyData;
};

class DataCipher::CipherError : public LocalizedError {
public:
    enum class Reason { invalidKey, notSealed, unreadable };

    explicit CipherError(Reason reason);

    Reason reason() const { return m_reason; }

private:
    Reason m_reason;
};

} // namespace velmo
