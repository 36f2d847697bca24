#pragma once

#include <QObject>
#include <QString>

#include <optional>

namespace velmo {

/// How the machine reaches the network. Answers come from memory.
class NetworkMonitor : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    struct Path {
        bool isSatisfied = false;
        bool usesWiFi = false;
        bool usesWiredEthernet = false;
        QString name; ///< of the connection, empty if it has none

        bool operator==(const Path &) const = default;
    };

    /// Begins to follow. Once.
    virtual void start() = 0;
    /// Nothing until the desktop has answered.
    virtual std::optional<Path> path() const = 0;
    virtual std::optional<bool> isWiFiPoweredOn() const = 0;
    /// What is missing to know more, for the user; empty if nothing is.
    virtual QString issue() const = 0;

Q_SIGNALS:
    void changed();
};

} // namespace velmo
