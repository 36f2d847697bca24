#pragma once

#include <QObject>
#include <QString>
#include <QUrl>

#include <functional>
#include <optional>
#include <vector>

namespace velmo {

/// The installed applications, as their desktop entries describe them.
class Applications : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    struct Application {
        QString id; ///< as "org.gnome.Calculator.desktop"
        QString name;
        QString icon;        ///< a name of the icon theme, or a path
        QString keywords;    ///< what else a search may find it by
        QString bundleID;    ///< as settings and profiles know it, else its id without the suffix
        QString windowClass; ///< of its windows, where the entry says so

        bool operator==(const Application &) const = default;
    };

    /// Those that show in menus, by name.
    virtual std::vector<Application> installed() const = 0;
    virtual std::optional<Application> find(const QString &id) const = 0;
    /// The id that a desktop entry's file has, nothing for any other file.
    virtual std::optional<QString> idOf(const QUrl &file) const = 0;
    /// The id of what opens files of that media type, or addresses ("x-scheme-handler/mailto").
    virtual std::optional<QString> handlerOf(const QString &mediaType) const = 0;
    /// Returns before the application shows. Throws `LocalizedError`.
    virtual void launch(const QString &id) = 0;

Q_SIGNALS:
    /// Applications came or went.
    void changed();
};

} // namespace velmo
