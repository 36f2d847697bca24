#pragma once

#include "VelmoCore/Permissions/PermissionKind.h"

#include <QObject>
#include <QString>
#include <QUrl>

#include <memory>
#include <optional>
#include <vector>

namespace velmo {

class AppServices;
class NotchViewModel;

/// What a module's page is made from. Both outlive the page.
struct ModuleContext {
    AppServices &services;
    NotchViewModel &panel;

    /// Closes the panel.
    void close() const;
    /// Shows another module.
    void select(const QString &moduleID) const;
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
    /// What the module works with only where it is granted.
    virtual std::vector<PermissionKind> permissions() const { return {}; }

    /// Runs before the page first shows. Throws `LocalizedError` where it can't work.
    virtual void activate() {}
    /// The width that the page asks for, in points; nothing for the panel's own. A page whose wish
    /// changes says so by `NotchViewModel::contentWidthChanged`.
    virtual std::optional<double> contentWidth(const AppServices &) const { return std::nullopt; }
    virtual View makeView(const ModuleContext &context) = 0;
};

} // namespace velmo
