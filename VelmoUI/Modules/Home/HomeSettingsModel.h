#pragma once

#include "VelmoUI/Design/RecordListModel.h"
#include "VelmoUI/Modules/Frame/OrderRows.h"
#include "VelmoUI/Modules/Home/FavoriteApps.h"
#include "VelmoUI/Modules/Home/HomeCardSources.h"

#include <QtQml/qqmlregistration.h>

namespace velmo {

/// Home's cards and favourites, in order. An order keeps the ids that this version doesn't know.
class HomeSettingsModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by its module")
    Q_PROPERTY(QAbstractItemModel *cards READ cards CONSTANT)
    Q_PROPERTY(QAbstractItemModel *favorites READ favorites CONSTANT)
    Q_PROPERTY(bool hasFavorites READ hasFavorites NOTIFY changed)

public:
    /// Both outlive this object.
    HomeSettingsModel(const HomeCardSources &sources, FavoriteApps &favorites);

    QAbstractItemModel *cards() { return &m_cards; }
    QAbstractItemModel *favorites() { return &m_favorites; }
    bool hasFavorites() const { return m_favorites.rowCount() > 0; }

    /// From and to are rows; rows that don't exist change nothing.
    Q_INVOKABLE void moveCard(int from, int to);
    Q_INVOKABLE void toggleCard(int row);
    Q_INVOKABLE void resetCardOrder();
    Q_INVOKABLE void moveFavorite(int from, int to);
    Q_INVOKABLE void removeFavorite(int row);

Q_SIGNALS:
    void changed();

private:
    void update();
    std::vector<OrderRow> cardRows() const;
    std::vector<OrderRow> favoriteRows() const;

    const HomeCardSources m_sources;
    SettingsStore &m_settings;
    FavoriteApps &m_apps;
    RecordListModel<OrderRow> m_cards;
    RecordListModel<OrderRow> m_favorites;
};

} // namespace velmo
