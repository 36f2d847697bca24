#pragma once

#include "VelmoSystem/Linux/DBus/CallerCheck.h"
#include "VelmoSystem/Linux/DBus/VerbBus.h"

#include <QDBusMessage>
#include <QDBusVirtualObject>

#include <optional>
#include <set>
#include <unistd.h>

namespace velmo {

/// The objects of all nouns on the bus. Calls wait for `serve`; each is held against the table, and
/// answered when its verb has an answer.
class VerbObjects : public QDBusVirtualObject {
    Q_OBJECT

public:
    /// Only the calls of `user` are carried out.
    VerbObjects(QDBusConnection bus, std::vector<VerbSyntax> table, uid_t user = ::getuid());
    ~VerbObjects() override;

    void registerObjects();
    void unregisterObjects();
    void serve(std::vector<Verb> verbs);
    /// Emits `Changed` soon, once for what changes several times until then. Nothing for a noun
    /// without verbs.
    void announceChange(const QString &noun, const QString &what);

    QString introspect(const QString &path) const override;
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

private:
    QStringList nouns() const;
    std::vector<VerbSyntax> verbsAt(const QString &path) const;
    void take(const QDBusMessage &message);
    void run(const QDBusMessage &message);
    void runVerb(const VerbSyntax &syntax, const QDBusMessage &message);
    void cancel(const QDBusMessage &message);
    VerbReply reply(const VerbSyntax &syntax, const QDBusMessage &message, const QString &token);
    void emitChanges();

    QDBusConnection m_bus;
    std::vector<VerbSyntax> m_table;
    std::optional<std::vector<Verb>> m_verbs; ///< from `serve` on
    std::vector<QDBusMessage> m_waiting;
    /// What cancels a long call, by its object's path and its token.
    std::map<std::pair<QString, QString>, std::function<void()>> m_cancellers;
    std::set<std::pair<QString, QString>> m_changes; ///< noun and what
    CallerCheck m_callers;
};

} // namespace velmo
