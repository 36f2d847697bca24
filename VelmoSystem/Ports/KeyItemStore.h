#pragma once

#include "VelmoCore/Foundation/LocalizedError.h"
#include "VelmoCore/Foundation/PlatformNames.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace velmo {

/// The system's store of secrets: items found by service and account.
class KeyItemStore {
public:
    struct Item {
        QString service;
        QString account;
        QString label;
        QString description;
    };

    /// What holds the items.
    enum class Place { keyring, privateFile };
    /// What the user calls it.
    static QString name(Place place)
    {
        return QString::fromUtf16(place == Place::keyring ? PlatformNames::keyring
                                                          : PlatformNames::privateFile);
    }

    /// Statuses of the Keychain family, for stores that have none of their own.
    static constexpr int duplicateItem = -25299;
    static constexpr int notAvailable = -25291;
    static constexpr int interactionNotAllowed = -25308;

    /// The store answered with a refusal, or not at all. Not-found is no error.
    class Refusal : public LocalizedError {
    public:
        /// `message` is the store's own text; an empty one gives way to one that names the status.
        Refusal(int status, const QString &message, Place place = Place::keyring)
            : LocalizedError(message.isEmpty()
                                 ? QStringLiteral("Erro do %1 %2.").arg(name(place)).arg(status)
                                 : message),
              m_status(status)
        {
        }
        int status() const { return m_status; }

    private:
        int m_status;
    };

    virtual ~KeyItemStore() = default;

    /// Where the items are kept now.
    virtual Place place() const = 0;

    /// The item's secret, nothing if there is no such item. Throws `Refusal`, also when locked.
    virtual std::optional<QByteArray> find(const Item &item) const = 0;
    /// False if such an item exists already. Throws `Refusal`.
    virtual bool add(const Item &item, const QByteArray &secret) = 0;
    /// Nothing where there is no such item. Throws `Refusal`.
    virtual void remove(const Item &item) = 0;
    /// Gives an existing item the label and description of `item`, if its label differs. What can't
    /// be done is left.
    virtual void rename(const Item &item) = 0;
};

} // namespace velmo
