#include "VelmoCore/Storage/JSONFileStore.h"

#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Storage/AtomicFile.h"

#include <QFile>
#include <QFileInfo>

namespace velmo {
namespace {

QString description(const std::exception &error)
{
    const auto *localized = dynamic_cast<const LocalizedError *>(&error);
    return localized ? localized->description() : QString::fromUtf8(error.what());
}

QString nameOf(const QString &path)
{
    return QFileInfo(path).fileName();
}

void warn(const QString &text)
{
    qCWarning(Log::storage).noquote() << text;
}

} // namespace

QString LoadIssue::recovered(const QString &label, const std::optional<QString> &quarantinedAt)
{
    const QString place =
        quarantinedAt ? QStringLiteral(" em %1").arg(nameOf(*quarantinedAt)) : QString();
    return QStringLiteral("%1: os dados salvos estavam ilegíveis e foram isolados%2. "
                          "A lista recomeçou vazia.")
        .arg(label, place);
}

QString LoadIssue::locked(const QString &label)
{
    return QStringLiteral("%1: os dados estão criptografados e a chave não está disponível. "
                          "Nada foi alterado nem será gravado.")
        .arg(label);
}

JSONFile::JSONFile(const QString &path, const std::optional<DataCipher> &cipher)
    : m_path(path), m_file{cipher}
{
}

void JSONFile::write(const QByteArray &text) const
{
    m_file.write(text, m_path);
}

JSONFile::ReadResult JSONFile::read(Date now, const std::function<void(const QByteArray &)> &decode,
                                    const std::function<QByteArray()> &encode) const
{
    const QString name = nameOf(m_path);
    try {
        AtomicFile::removeStrays(m_path);
        if (!QFile::exists(m_path))
            return {Failure::missing, {}};
        const ProtectedFile::Contents contents = m_file.read(m_path);
        decode(contents.data);
        if (contents.wasPlaintext && m_file.cipher)
            sealPlainFile(encode);
        return {};
    } catch (const ProtectedFile::ProtectedFileError &) {
        warn(QStringLiteral("Arquivo criptografado sem chave: %1").arg(name));
        return {Failure::locked, {}};
    } catch (const DataCipher::CipherError &) {
        warn(QStringLiteral("Arquivo criptografado com outra chave: %1").arg(name));
        return {Failure::locked, {}};
    } catch (const std::exception &error) {
        warn(QStringLiteral("Arquivo de dados ilegível (%1): %2").arg(name, description(error)));
        return {Failure::recovered, AtomicFile::quarantine(m_path, now)};
    }
}

void JSONFile::sealPlainFile(const std::function<QByteArray()> &encode) const
{
    const QString name = nameOf(m_path);
    try {
        write(encode());
        qCInfo(Log::storage).noquote()
            << QStringLiteral("Arquivo convertido para criptografado: %1").arg(name);
    } catch (const std::exception &error) {
        warn(QStringLiteral("Falha ao criptografar %1: %2").arg(name, description(error)));
    }
}

std::optional<QString> JSONFile::saveIssue(const std::exception &error, const QString &label,
                                           const std::optional<QString> &loadIssue)
{
    if (loadIssue && dynamic_cast<const ProtectedFile::ProtectedFileError *>(&error))
        return std::nullopt;
    return QStringLiteral("%1: não foi possível salvar (%2).").arg(label, description(error));
}

} // namespace velmo
