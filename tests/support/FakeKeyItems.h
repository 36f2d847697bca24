#pragma once

#include "VelmoSystem/Ports/KeyItemStore.h"

#include <map>

namespace velmo {

/// A key store in memory that can be made to refuse, or to be second in a race.
class FakeKeyItems : public KeyItemStore {
public:
    struct Entry {
        QByteArray secret;
        QString label;
    };

    Place place() const override { return holder; }
    std::optional<QByteArray> find(const Item &item) const override
    {
        if (refusal)
            throw *refusal;
        const auto entry = entries.find(item.service + u'/' + item.account);
        return entry == entries.end() ? std::nullopt : std::optional(entry->second.secret);
    }

    bool add(const Item &item, const QByteArray &secret) override
    {
        ++addCount;
        if (refusal)
            throw *refusal;
        const QString name = item.service + u'/' + item.account;
        if (rival)
            entries.insert({name, *rival});
        return !isTaken && entries.insert({name, {secret, item.label}}).second;
    }

    void remove(const Item &item) override
    {
        if (refusal)
            throw *refusal;
        entries.erase(item.service + u'/' + item.account);
    }

    void rename(const Item &item) override
    {
        entries.at(item.service + u'/' + item.account).label = item.label;
    }

    std::map<QString, Entry> entries;
    Place holder = Place::keyring;
    std::optional<Refusal> refusal;
    std::optional<Entry> rival; ///< what another process adds just before us
    bool isTaken = false;       ///< the item exists, but is never found
    int addCount = 0;
};

} // namespace velmo
