#pragma once

#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoUI/Design/RecordListModel.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace velmo {

class AppServices;

/// A row of a list that the user puts in order.
struct OrderRow {
    QString id;
    QString title;
    QString symbol; ///< empty where there is an icon
    QString icon;   ///< the source of its picture
    bool isShown = true;
    bool canToggle = true;
    QString spoken; ///< for screen readers: title, place and whether it shows
    QString action; ///< what the row's control does to it

    bool operator==(const OrderRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(OrderRow, (), (id, title, symbol, icon, isShown, canToggle, spoken, action))

/// Modules, cards and favourites, in order. An order keeps the ids that this version doesn't know.
class ModulesPaneModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made in C++")
    Q_PROPERTY(QAbstractItemModel *modules READ modules CONSTANT)
    Q_PROPERTY(QAbstractItemModel *cards READ cards CONSTANT)
    Q_PROPERTY(QAbstractItemModel *favorites READ favorites CONSTANT)
    Q_PROPERTY(bool hasFavorites READ hasFavorites NOTIFY changed)

public:
    explicit ModulesPaneModel(AppServices &services);
    ~ModulesPaneModel() override;

    QAbstractItemModel *modules() { return &m_modules; }
    QAbstractItemModel *cards() { return &m_cards; }
    QAbstractItemModel *favorites() { return &m_favorites; }
    bool hasFavorites() const { return m_favorites.rowCount() > 0; }

    /// From and to are rows; rows that don't exist change nothing.
    Q_INVOKABLE void moveModule(int from, int to);
    Q_INVOKABLE void moveCard(int from, int to);
    Q_INVOKABLE void moveFavorite(int from, int to);

    /// The last module that shows can't be hidden.
    Q_INVOKABLE void toggleModule(int row);
    Q_INVOKABLE void toggleCard(int row);
    Q_INVOKABLE void removeFavorite(int row);

    Q_INVOKABLE void resetModuleOrder();
    Q_INVOKABLE void resetCardOrder();

Q_SIGNALS:
    void changed();

private:
    const AppSettings &settings() const;
    void update();
    std::vector<OrderRow> moduleRows() const;
    std::vector<OrderRow> cardRows() const;
    std::vector<OrderRow> favoriteRows() const;

    AppServices &m_services;
    RecordListModel<OrderRow> m_modules;
    RecordListModel<OrderRow> m_cards;
    RecordListModel<OrderRow> m_favorites;
    SettingsStore::ObserverID m_observer;
};

} // namespace velmo
