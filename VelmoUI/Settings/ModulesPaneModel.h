#pragma once

#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoUI/Design/RecordListModel.h"
#include "VelmoUI/Modules/Frame/ModuleRegistry.h"
#include "VelmoUI/Modules/Frame/OrderRows.h"

#include <QtQml/qqmlregistration.h>

namespace velmo {

/// The modules, in order. An order keeps the ids that this version doesn't know.
class ModulesPaneModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the settings window")
    Q_PROPERTY(QAbstractItemModel *modules READ modules CONSTANT)

public:
    /// Both outlive this object.
    ModulesPaneModel(SettingsStore &settings, const ModuleRegistry &registry);

    QAbstractItemModel *modules() { return &m_modules; }

    /// From and to are rows; rows that don't exist change nothing.
    Q_INVOKABLE void moveModule(int from, int to);
    /// The last module that shows can't be hidden.
    Q_INVOKABLE void toggleModule(int row);
    Q_INVOKABLE void resetModuleOrder();

private:
    void update();

    SettingsStore &m_settings;
    const ModuleRegistry &m_registry;
    RecordListModel<OrderRow> m_modules;
};

} // namespace velmo
