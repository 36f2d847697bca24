#include "VelmoSystem/Storage/DataProtectionStatus.h"

#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Foundation/Overloaded.h"
#include "VelmoSystem/Storage/KeychainKeyStore.h"

namespace velmo {

namespace {

QString protectedText(KeyItemStore::Place place)
{
    const QString item = place == KeyItemStore::Place::keyring
                             ? QStringLiteral(" (item “Orvane — chave dos dados”)")
                             : QString();
    return QStringLiteral("Notas, tarefas, histórico do clipboard (textos e imagens), prateleira e "
                          "histórico de atividade são gravados com AES‑256‑GCM. A chave é única "
                          "deste %1 e fica no %2%3.")
        .arg(QStringView(PlatformNames::computer), KeyItemStore::name(place), item);
}

QString plainText(KeyItemStore::Place place)
{
    const QString item = (place == KeyItemStore::Place::keyring ? QStringLiteral("item do %1")
                                                                : QStringLiteral("%1"))
                             .arg(KeyItemStore::name(place));
    return QStringLiteral("Arquivos guardados como cópia na prateleira continuam como arquivos "
                          "normais, para poderem ser abertos em outros apps. Apagar o %1 torna os "
                          "dados criptografados ilegíveis.")
        .arg(item);
}

} // namespace

DataProtectionStatus DataProtectionStatus::fromKeychain(KeyItemStore &items)
{
    try {
        const auto key = KeychainKeyStore(items).loadOrCreate();
        return {Enabled{DataCipher(key.data), key.created, items.place()}};
    } catch (const LocalizedError &error) {
        qCCritical(Log::storage).noquote()
            << "Chave de criptografia indisponível:" << error.description();
        return {Unavailable{error.description(), items.place()}};
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
            [](const Enabled &enabled) {
                return Presentation{QStringLiteral("lock.fill"),
                                    QStringLiteral("Criptografia ativa"),
                                    protectedText(enabled.place), plainText(enabled.place)};
            },
            [](const Unavailable &unavailable) {
                return Presentation{
                    QStringLiteral("exclamationmark.lock.fill"),
                    QStringLiteral("Chave de criptografia indisponível"),
                    QStringLiteral(
                        "O %1 não liberou a chave (%2). Os dados já criptografados foram "
                        "mantidos intactos e não serão sobrescritos; reinicie o Orvane depois de "
                        "desbloquear o %1.")
                        .arg(KeyItemStore::name(unavailable.place), unavailable.message),
                    plainText(unavailable.place)};
            },
            [](const Awaited &) {
                return Presentation{
                    QStringLiteral("lock.fill"), QStringLiteral("Aguardando a chave"),
                    QStringLiteral("O chaveiro ainda não respondeu. Os dados guardados aparecem "
                                   "assim que a chave chegar.")};
            },
            [](const Disabled &) {
                return Presentation{QStringLiteral("lock.open"),
                                    QStringLiteral("Criptografia desativada"), std::nullopt,
                                    std::nullopt};
            },
        },
        value);
}

} // namespace velmo
