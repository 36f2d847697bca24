#pragma once

#include "VelmoCore/Settings/AppSettings.h"
#include "VelmoUI/Composition/AppServices.h"

#include "tests/support/FakeDesktop.h"

#include <QAbstractItemModel>

#include <gtest/gtest.h>

namespace velmo {

/// All services on a desktop of fakes.
class ServicesFixture : public testing::Test {
protected:
    ServicesFixture();
    ~ServicesFixture() override;

    const AppSettings &settings() const;
    void change(const std::function<void(AppSettings &)> &change);
    /// Adds Orvane's own modules, all of them or the one.
    void addModules(const QString &id = {});

    FakeDesktop desktop;
    AppServices services;
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
