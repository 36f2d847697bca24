#include "VelmoCore/Storage/ProtectedFile.h"

#include "VelmoCore/Storage/AtomicFile.h"

#include <QFile>

namespace velmo {
namespace {

/// Proves that the cipher is that of the sealed file.
void openOrThrowLocked(const QString &path, const std::optional<DataCipher> &cipher)
{
    if (!cipher)
        throw ProtectedFile::ProtectedFileError();
    try {
        cipher->open(AtomicFile::read(path));
    } catch (const LocalizedError &) {
        throw ProtectedFile::ProtectedFileError();
    }
}

} // namespace

ProtectedFile::ProtectedFileError::ProtectedFileError()
    : LocalizedError(QStringLiteral(
          "Os dados estão criptografados e a chave não está disponível. Nada foi alterado."))
{
}

ProtectedFile::Contents ProtectedFile::read(const QString &path) const
{
    const QByteArray data = AtomicFile::read(path);
    if (!DataCipher::isSealed(data))
        return {data, true};
    if (!cipher)
        throw ProtectedFileError();
    return {cipher->open(data), false};
}

void ProtectedFile::write(const QByteArray &data, const QString &path) const
{
    if (QFile::exists(path) &&
        DataCipher::isSealed(AtomicFile::read(path, DataCipher::magic.size())))
        openOrThrowLocked(path, cipher);
    AtomicFile::write(cipher ? cipher->seal(data) : data, path);
}

} // namespace velmo
