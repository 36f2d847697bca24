#include "VelmoSystem/Storage/KeychainKeyStore.h"

#include "VelmoCore/Storage/DataCipher.h"

namespace velmo {
namespace {

const KeyItemStore::Item &keyItem()
{
    static const KeyItemStore::Item item = {
        QStringLiteral("app.velmo.Velmo.storage"),
        QStringLiteral("data-key-v1"),
        QStringLiteral("Orvane — chave dos dados"),
        QStringLiteral("Chave de criptografia local do Orvane"),
    };
    return item;
}

} // namespace

KeychainKeyStore::InvalidItem::InvalidItem(KeyItemStore::Place place)
    : LocalizedError(
          QStringLiteral("O item da chave no %1 está inválido.").arg(KeyItemStore::name(place)))
{
}

KeychainKeyStore::KeychainKeyStore(KeyItemStore &items) : m_items(items)
{
}

std::optional<QByteArray> KeychainKeyStore::load() const
{
    std::optional<QByteArray> key = m_items.find(keyItem());
    if (key && key->size() != DataCipher::keyLength)
        throw InvalidItem(m_items.place());
    return key;
}

KeychainKeyStore::Key KeychainKeyStore::loadOrCreate()
{
    if (const std::optional<QByteArray> key = load()) {
        m_items.rename(keyItem());
        return {*key, false};
    }
    const QByteArray fresh = DataCipher::generateKeyData();
    if (m_items.add(keyItem(), fresh))
        return {fresh, true};
    // Another process was faster: its key is the one.
    if (const std::optional<QByteArray> key = load())
        return {*key, false};
    throw KeyItemStore::Refusal(KeyItemStore::duplicateItem, {}, m_items.place());
}

} // namespace velmo
