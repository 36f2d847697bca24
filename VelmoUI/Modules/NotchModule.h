#pragma once

#include <QObject>
#include <QString>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>

namespace velmo {

class AppServices;

/// What a module's page may do with the panel it stands in.
struct ModuleContext {
    AppServices &services;
    /// Closes the panel.
    std::function<void()> close;
    /// Shows another module.
    std::function<void(const QString &moduleID)> select;
};

/// A page of the open panel. One object a module for the run; each panel makes its own view.
class NotchModule {
public:
    /// A page: the QML that draws it and the object that it shows, as its property `page`.
    struct View {
        QUrl source;
        std::unique_ptr<QObject> page;
    };

    virtual ~NotchModule() = default;

    virtual QString id() const = 0;
    virtual QString title() const = 0;
    virtual QString symbol() const = 0;

    /// Runs before the page first shows. Throws `LocalizedError` where it can't work.
    virtual void activate() {}
    /// The width that the page asks for, in points; nothing for the panel's own.
    virtual std::optional<double> contentWidth(const AppServices &) const { return std::nullopt; }
    virtual View makeView(const ModuleContext &context) = 0;
};

} // namespace velmo
