#include "VelmoUI/App/DataProtectionStatus.h"

#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Foundation/Overloaded.h"
#include "VelmoSystem/Storage/KeychainKeyStore.h"

namespace velmo {

DataProtectionStatus DataProtectionStatus::fromKeychain(KeyItemStore &items)
{
    try {
        const auto key = KeychainKeyStore(items).loadOrCreate();
        return {Enabled{DataCipher(key.data), key.created}};
    } catch (const LocalizedError &error) {
        qCCritical(Log::storage).noquote()
            << "Chave de criptografia indisponível:" << error.description();
        return {Unavailable{error.description()}};
    }
}

std::optional<DataCipher> DataProtectionStatus::cipher() const
{
    if (const auto *enabled = std::get_if<Enabled>(&value))
        return enabled->cipher;
    return std::nullopt;
}

DataProtectionStatus::Presentation DataProtectionStatus::presentation() const
{
    return std::visit(
        overloaded{
            [](const Enabled &) {
                return Presentation{
                    QStringLiteral("lock.fill"), QStringLiteral("Criptografia ativa"),
                    QStringLiteral(
                        "Notas, tarefas, histórico do clipboard (textos e imagens), prateleira, "
                        "textos reconhecidos nas capturas e histórico de atividade são gravados "
                        "com AES‑256‑GCM. A chave é única deste Mac e fica no Keychain (item "
                        "“Orvane — chave dos dados”).")};
            },
            [](const Unavailable &unavailable) {
                return Presentation{
                    QStringLiteral("exclamationmark.lock.fill"),
                    QStringLiteral("Chave de criptografia indisponível"),
                    QStringLiteral(
                        "O Keychain não liberou a chave (%1). Os dados já criptografados foram "
                        "mantidos intactos e não serão sobrescritos; reinicie o Orvane depois de "
                        "desbloquear o Keychain.")
                        .arg(unavailable.message)};
            },
            [](const Awaited &) {
                return Presentation{
                    QStringLiteral("lock.fill"), QStringLiteral("Aguardando a chave"),
                    QStringLiteral("O chaveiro ainda não respondeu. Os dados guardados aparecem "
                                   "assim que a chave chegar.")};
            },
            [](const Disabled &) {
                return Presentation{QStringLiteral("lock.open"),
                                    QStringLiteral("Criptografia desativada"), std::nullopt};
            },
        },
        value);
}

} // namespace velmo
