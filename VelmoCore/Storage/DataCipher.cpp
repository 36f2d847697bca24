#include "VelmoCore/Storage/DataCipher.h"

#include "VelmoCore/Storage/AtomicFile.h"

#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/rand.h>

#include <algorithm>
#include <memory>

namespace velmo {
namespace {

constexpr qsizetype magicLength = DataCipher::magic.size();
constexpr int nonceLength = 12;
constexpr int tagLength = 16;
constexpr qsizetype headerLength = magicLength + nonceLength;
/// EVP counts in `int`.
constexpr qsizetype longestStep = qsizetype{1} << 30;

static_assert(headerLength + tagLength == DataCipher::overhead);

using Context = std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)>;

Context makeContext()
{
    return {EVP_CIPHER_CTX_new(), &EVP_CIPHER_CTX_free};
}

/// Looked for once: that loads the library's algorithms.
const EVP_CIPHER *algorithm()
{
    static const std::unique_ptr<EVP_CIPHER, decltype(&EVP_CIPHER_free)> fetched(
        EVP_CIPHER_fetch(nullptr, "AES-256-GCM", nullptr), &EVP_CIPHER_free);
    return fetched.get();
}

unsigned char *bytes(QByteArray &data)
{
    return reinterpret_cast<unsigned char *>(data.data());
}

const unsigned char *bytes(const QByteArray &data)
{
    return reinterpret_cast<const unsigned char *>(data.constData());
}

/// Throws with the library's own reason, and leaves its queue empty: TLS on this thread reads it
/// too.
[[noreturn]] void throwLibraryError()
{
    std::array<char, 256> text = {};
    ERR_error_string_n(ERR_get_error(), text.data(), text.size());
    ERR_clear_error();
    throw DataCipher::LibraryError(
        QStringLiteral("A criptografia falhou (%1).").arg(QString::fromUtf8(text.data())));
}

/// Runs `update`, EVP's encryption or decryption, over `size` bytes.
template <class Update>
bool transform(Update update, EVP_CIPHER_CTX *context, unsigned char *output,
               const unsigned char *input, qsizetype size)
{
    while (size > 0) {
        const int step = static_cast<int>(std::min(size, longestStep));
        int written = 0;
        if (update(context, output, &written, input, step) != 1 || written != step)
            return false;
        output += step;
        input += step;
        size -= step;
    }
    return true;
}

QString message(DataCipher::CipherError::Reason reason)
{
    switch (reason) {
    case DataCipher::CipherError::Reason::invalidKey:
        return QStringLiteral("Chave de criptografia inválida.");
    case DataCipher::CipherError::Reason::notSealed:
        return QStringLiteral("O arquivo não está criptografado.");
    case DataCipher::CipherError::Reason::unreadable:
        return QStringLiteral(
            "Não foi possível descriptografar (chave diferente ou arquivo alterado).");
    }
    Q_UNREACHABLE();
}

} // namespace

DataCipher::CipherError::CipherError(Reason reason)
    : LocalizedError(message(reason)), m_reason(reason)
{
}

DataCipher::DataCipher(const QByteArray &keyData) : m_keyData(keyData)
{
    if (keyData.size() != keyLength)
        throw CipherError(CipherError::Reason::invalidKey);
    algorithm(); // here, where the key is read, and not where the first file waits for it
}

QByteArray DataCipher::generateKeyData()
{
    QByteArray key(keyLength, Qt::Uninitialized);
    if (RAND_priv_bytes(bytes(key), static_cast<int>(keyLength)) != 1)
        throwLibraryError();
    return key;
}

bool DataCipher::isSealed(const QByteArray &data)
{
    return data.startsWith(QByteArrayView(magic.data(), magicLength));
}

bool DataCipher::isSealedFile(const QString &path)
{
    try {
        return isSealed(AtomicFile::read(path, magicLength));
    } catch (const FileError &) {
        return false;
    }
}

QByteArray DataCipher::seal(const QByteArray &data) const
{
    QByteArray sealed(data.size() + overhead, Qt::Uninitialized);
    std::copy(magic.begin(), magic.end(), sealed.begin());
    unsigned char *nonce = bytes(sealed) + magicLength;
    unsigned char *ciphertext = nonce + nonceLength;
    int rest = 0;
    const Context context = makeContext();
    if (!context || RAND_bytes(nonce, nonceLength) != 1 ||
        EVP_EncryptInit_ex(context.get(), algorithm(), nullptr, bytes(m_keyData), nonce) != 1 ||
        !transform(EVP_EncryptUpdate, context.get(), ciphertext, bytes(data), data.size()) ||
        EVP_EncryptFinal_ex(context.get(), ciphertext + data.size(), &rest) != 1 ||
        EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_GCM_GET_TAG, tagLength,
                            ciphertext + data.size()) != 1)
        throwLibraryError();
    return sealed;
}

QByteArray DataCipher::open(const QByteArray &data) const
{
    if (!isSealed(data))
        throw CipherError(CipherError::Reason::notSealed);
    if (data.size() < overhead)
        throw CipherError(CipherError::Reason::unreadable);
    QByteArray plain(data.size() - overhead, Qt::Uninitialized);
    const unsigned char *nonce = bytes(data) + magicLength;
    const unsigned char *ciphertext = nonce + nonceLength;
    QByteArray tag = data.last(tagLength);
    int rest = 0;
    const Context context = makeContext();
    if (!context ||
        EVP_DecryptInit_ex(context.get(), algorithm(), nullptr, bytes(m_keyData), nonce) != 1 ||
        !transform(EVP_DecryptUpdate, context.get(), bytes(plain), ciphertext, plain.size()) ||
        EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_GCM_SET_TAG, tagLength, tag.data()) != 1 ||
        EVP_DecryptFinal_ex(context.get(), bytes(plain) + plain.size(), &rest) != 1) {
        ERR_clear_error();
        throw CipherError(CipherError::Reason::unreadable);
    }
    return plain;
}

} // namespace velmo
