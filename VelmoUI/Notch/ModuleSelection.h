#pragma once

#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoUI/Modules/Frame/ModuleRegistry.h"

namespace velmo {

/// Which module one panel shows.
class ModuleSelection : public QObject {
    Q_OBJECT

public:
    /// Both outlive this object.
    ModuleSelection(ModuleRegistry &registry, SettingsStore &settings);

    /// In the user's order.
    std::vector<NotchModule *> visible() const;
    /// Null only without a visible module.
    NotchModule *current() const;
    /// The width of the panel that the current module asks for.
    std::optional<double> width() const;
    bool isVisible(const QString &id) const;

    /// Does nothing unless a visible module has that id.
    void select(const QString &id);
    /// By place among the visible modules; out of range does nothing.
    void select(int index);
    /// Steps through the visible modules, around the end.
    void selectAdjacent(int direction);
    /// Prepares the current module for its first page.
    void activate();

Q_SIGNALS:
    /// Another module is the current one.
    void changed();
    /// The user has shown, hidden or moved modules.
    void visibleChanged();

private:
    ModuleRegistry &m_registry;
    SettingsStore &m_settings;
    QString m_id;
    SettingsStore::Observation m_observation;
};

} // namespace velmo
