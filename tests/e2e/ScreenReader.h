#pragma once

#include "tests/support/PrivateBus.h"
#include "tests/support/XServer.h"

#include <QDBusMessage>
#include <QRect>

#include <functional>
#include <vector>

namespace velmo {

/// Orvane as a screen reader sees it.
class ScreenReader {
public:
    /// Bits of AT-SPI's states.
    enum State { focusable = 11, focused = 12, selected = 23, visible = 30 };

    /// One node of what Orvane exposes.
    struct Node {
        QString path; ///< on the bus
        QString name;
        QString role;
        quint64 states = 0;
        QString place; ///< roles and names from the window down

        bool is(State state) const { return (states >> state & 1) != 0; }
    };

    /// Before Orvane starts, which then speaks to it.
    ScreenReader(XServer &screen, const PrivateBus &bus, QProcessEnvironment &environment);
    ~ScreenReader();
    Q_DISABLE_COPY_MOVE(ScreenReader)

    bool findsApplication();
    /// Parents before their children.
    std::vector<Node> nodes() const;
    std::vector<Node> nodes(const std::function<bool(const Node &)> &wanted) const;
    /// On the screen.
    QRect frame(const Node &node) const;
    /// Presses it as a screen reader does; false where it can't be pressed.
    bool press(const Node &node) const;
    /// Whether it says that the clipboard is pasted at the start of that text.
    bool paste(const Node &node) const;
    QString text(const Node &node) const;

private:
    QDBusMessage call(const QString &service, const QString &path, const QString &interface,
                      const QString &method, const QVariantList &arguments) const;
    QVariant ask(const QString &path, const QString &interface, const QString &method,
                 const QVariantList &arguments = {}) const;
    std::vector<std::pair<QString, QString>> children(const QString &service,
                                                      const QString &path) const;
    void walk(const QString &parent, const QString &place, std::vector<Node> &found) const;

    QDBusConnection m_connection{QString()};
    QString m_application;
};

} // namespace velmo
