#pragma once

#include "VelmoSystem/Ports/KeyItemStore.h"

#include <memory>
#include <stop_token>

namespace velmo {

/// The key store of this system: the Secret Service where the session has one with a default
/// keyring, else private files.
///
/// The first item decides for good. Which of the two holds it is written down before it is made,
/// and a run that can't reach that one is refused: it must not make a second key in the other.
class KeyItemStores : public KeyItemStore {
public:
    /// `$XDG_STATE_HOME/Orvane` (freedesktop base directories).
    static QString standardFolder();

    /// `folder` holds the choice, and the private files if it falls on them. `stop` ends what
    /// waits for the Secret Service, which is a refusal then.
    explicit KeyItemStores(const QString &folder, const std::stop_token &stop = {});

    /// As it is written down; the Secret Service where that can't be read.
    Place place() const override;
    std::optional<QByteArray> find(const Item &item) const override;
    bool add(const Item &item, const QByteArray &secret) override;
    void remove(const Item &item) override;
    void rename(const Item &item) override;

private:
    enum class Kind { secretService, privateFiles };

    QString choicePath() const;
    std::optional<Kind> remembered() const;
    void remember(Kind kind) const;
    /// The store to ask. Throws `Refusal` if the remembered one can't be reached.
    Kind choose(const Item &item, std::optional<Kind> remembered) const;
    KeyItemStore &store(Kind kind) const;

    QString m_folder;
    std::stop_token m_stop;
    std::unique_ptr<KeyItemStore> m_files;
    std::unique_ptr<KeyItemStore> m_service;
};

} // namespace velmo
