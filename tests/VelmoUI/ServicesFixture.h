#pragma once

#include "VelmoUI/Composition/AppServices.h"
#include "VelmoUI/Composition/BuiltInModules.h"

#include "tests/support/FakeDesktop.h"

#include <QAbstractItemModel>

#include <gtest/gtest.h>

namespace velmo {

/// All services on a desktop of fakes.
class ServicesFixture : public testing::Test {
protected:
    const AppSettings &settings() const { return services.settings.settings(); }
    void change(const std::function<void(AppSettings &)> &change)
    {
        services.settings.update(change);
    }

    /// Adds Orvane's own modules, all of them or the one.
    void addModules(const QString &id = {})
    {
        for (auto &module : makeBuiltInModules(services)) {
            if (id.isEmpty() || module->id() == id)
                services.modules.add(std::move(module));
        }
    }

    FakeDesktop desktop;
    AppServices services{desktop.paths(), {DataProtectionStatus::Disabled{}}, desktop.platform};
};

/// A field of a list's row, by the name of its role.
inline QVariant field(const QAbstractItemModel *list, int row, const char *role)
{
    return list->index(row, 0).data(list->roleNames().key(role));
}

/// The texts of that field in all rows.
inline QStringList column(const QAbstractItemModel *list, const char *role)
{
    QStringList texts;
    for (int row = 0; row < list->rowCount(); ++row)
        texts.append(field(list, row, role).toString());
    return texts;
}

} // namespace velmo
