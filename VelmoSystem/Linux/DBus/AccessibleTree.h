#pragma once

#include "VelmoCore/Foundation/Scheduler.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QStringList>

#include <optional>
#include <stop_token>
#include <vector>

namespace velmo {

/// The buttons of other applications, by AT-SPI2. It waits for what it asks them, a bounded time in
/// all: never on the main thread.
class AccessibleTree {
public:
    struct Node {
        QString service;
        QDBusObjectPath path;
    };
    struct Button {
        Node node;
        QString name; ///< or its description, where that has the label
    };

    /// A button is looked for among so many nodes.
    static constexpr std::size_t mostNodes = 40'000;
    static constexpr Seconds patience = 10s;

    /// `scheduler` gives the time.
    AccessibleTree(const QDBusConnection &session, const Scheduler &scheduler,
                   std::stop_token stop);
    ~AccessibleTree();
    Q_DISABLE_COPY_MOVE(AccessibleTree)

    /// The first button, breadth first, in the active window of the process whose name or
    /// description holds one of the labels, in any case; where no window of it is active, in all.
    std::optional<Button> find(const QStringList &labels, qint64 pid) const;
    /// False where it doesn't take it.
    bool press(const Node &node) const;

private:
    std::optional<Node> application(qint64 pid) const;
    std::vector<Node> windows(const Node &application) const;
    std::vector<Node> children(const Node &node) const;
    std::optional<Button> firstNamed(const std::vector<Node> &buttons,
                                     const QStringList &lowerLabels) const;
    bool mayGoOn() const;

    QDBusPendingCall call(const Node &node, const QString &interface, const QString &method,
                          const QVariantList &arguments = {}) const;
    QDBusPendingCall askProperty(const Node &node, const QString &name) const;

    const Scheduler &m_scheduler;
    const std::stop_token m_stop;
    const Seconds m_end; ///< elapsed time
    QDBusConnection m_bus;
};

} // namespace velmo
