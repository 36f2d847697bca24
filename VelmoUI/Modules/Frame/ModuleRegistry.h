#pragma once

#include "VelmoCore/Settings/AppSettings.h"
#include "VelmoUI/Modules/Frame/NotchModule.h"

#include <QObject>

#include <map>
#include <memory>
#include <set>
#include <vector>

namespace velmo {

/// The modules, their order and what became of their activation.
class ModuleRegistry : public QObject {
    Q_OBJECT

public:
    /// Keeps the first of two modules with one id.
    void add(std::unique_ptr<NotchModule> module);

    NotchModule *find(const QString &id) const;
    /// In the order of registration.
    std::vector<NotchModule *> all() const;
    /// The user's order first, then the order of registration.
    std::vector<NotchModule *> ordered(const ModuleSettings &settings) const;
    /// `ordered` without the hidden ones.
    std::vector<NotchModule *> visible(const ModuleSettings &settings) const;

    /// Activates the module on its first use. A failure is kept under its id.
    void activateIfNeeded(NotchModule &module);
    /// Forgets the failure and activates again.
    void retry(const QString &id);
    /// Messages by module id.
    const std::map<QString, QString> &failures() const { return m_failures; }

Q_SIGNALS:
    void failuresChanged();

private:
    std::vector<std::unique_ptr<NotchModule>> m_modules;
    std::set<QString> m_activated;
    std::map<QString, QString> m_failures;
};

} // namespace velmo
