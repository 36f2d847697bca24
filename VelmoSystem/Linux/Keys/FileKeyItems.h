#pragma once

#include "VelmoSystem/Ports/KeyItemStore.h"

namespace velmo {

/// Secrets in private files, for a session without a Secret Service: one file of mode 0600 an item,
/// in a folder of mode 0700. Label and description have no place there.
class FileKeyItems : public KeyItemStore {
public:
    explicit FileKeyItems(const QString &folder);

    Place place() const override { return Place::privateFile; }
    std::optional<QByteArray> find(const Item &item) const override;
    bool add(const Item &item, const QByteArray &secret) override;
    void remove(const Item &item) override;
    void rename(const Item &item) override;

private:
    QString pathOf(const Item &item) const;

    QString m_folder;
};

} // namespace velmo
