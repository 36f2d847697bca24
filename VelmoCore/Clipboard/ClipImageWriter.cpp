#include "VelmoCore/Clipboard/ClipImageWriter.h"

#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Foundation/Uuid.h"
#include "VelmoCore/Storage/AtomicFile.h"
#include "VelmoCore/Storage/ProtectedFile.h"

#include <QDir>
#include <QFile>

#include <cerrno>

namespace velmo {

namespace {

/// Not sealing costs nothing but the sealing: the next reader tries again.
void seal(const ProtectedFile &files, const QByteArray &data, const QString &path)
{
    try {
        files.write(data, path);
    } catch (const LocalizedError &error) {
        qCDebug(Log::storage).noquote() << "Imagem não criptografada:" << error.description();
    }
}

} // namespace

std::optional<QString> ClipImageWriter::path(const QString &name) const
{
    if (!directory || name.isEmpty() || name.startsWith(u'.') || name.contains(u'/'))
        return std::nullopt;
    return QDir(*directory).filePath(name);
}

QString ClipImageWriter::store(const QByteArray &data) const
{
    const QString name = uuidText(makeUuid()) + QStringLiteral(".png");
    const auto file = path(name);
    if (!file)
        throw FileError(name, ENOENT);
    ProtectedFile{files.waitForCipher()}.write(data, *file);
    return name;
}

std::optional<QByteArray> ClipImageWriter::read(const QString &name) const
{
    const auto file = path(name);
    if (!file)
        return std::nullopt;
    try {
        const ProtectedFile protection{files.cipher()};
        const ProtectedFile::Contents contents = protection.read(*file);
        if (contents.wasPlaintext && protection.cipher)
            seal(protection, contents.data, *file);
        return contents.data;
    } catch (const LocalizedError &error) {
        qCDebug(Log::storage).noquote() << "Imagem ilegível:" << error.description();
        return std::nullopt;
    }
}

void ClipImageWriter::sealIfPlain(const QString &name) const
{
    const auto file = path(name);
    if (file && QFile::exists(*file) && !DataCipher::isSealedFile(*file))
        read(name);
}

void ClipImageWriter::remove(const QString &name) const
{
    if (const auto file = path(name))
        QFile::remove(*file);
}

} // namespace velmo
