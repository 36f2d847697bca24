#pragma once

#include "VelmoCore/Home/HomeCard.h"
#include "VelmoUI/Design/RecordListModel.h"
#include "VelmoUI/Modules/Frame/ModulePage.h"
#include "VelmoUI/Modules/Frame/PageCommand.h"
#include "VelmoUI/Modules/Frame/PanelPort.h"
#include "VelmoUI/Modules/Home/FavoriteApps.h"

#include <QtQml/qqmlregistration.h>

namespace velmo {

/// An application, as a favourite or as one that could be.
struct ApplicationRow {
    QString id;
    QString name;
    QString icon; ///< an address of the picture
    bool isFavorite = false;
    QString spoken; ///< for screen readers

    bool operator==(const ApplicationRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(ApplicationRow, (), (id, name, icon, isFavorite, spoken))

/// The favourite applications of Home, and the search for more.
class FavoritesModel : public velmo::ModulePage {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by Home")
    Q_PROPERTY(QAbstractItemModel *favorites READ favorites CONSTANT)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)
    /// What can be done with each of them.
    Q_PROPERTY(QAbstractItemModel *commands READ commands CONSTANT)
    /// Whether applications are being chosen.
    Q_PROPERTY(bool isPicking READ isPicking NOTIFY pickingChanged)
    /// What the search finds, favourites among it.
    Q_PROPERTY(QAbstractItemModel *found READ found CONSTANT)
    Q_PROPERTY(bool hasFound READ hasFound NOTIFY foundChanged)
    /// "3 de 12", "Favoritos cheios"
    Q_PROPERTY(QString count READ count NOTIFY changed)
    /// The favourite that was removed last, while it can come back; empty if none can.
    Q_PROPERTY(QString removedName READ removedName NOTIFY changed)

public:
    /// Both outlive this object.
    FavoritesModel(FavoriteApps &apps, PanelPort &panel);

    QAbstractItemModel *favorites() { return &m_favorites; }
    bool isEmpty() const { return m_favorites.rowCount() == 0; }
    QAbstractItemModel *commands() { return &m_commands; }
    bool isPicking() const { return m_isPicking; }
    QAbstractItemModel *found() { return &m_found; }
    bool hasFound() const { return m_found.rowCount() > 0; }
    QString count() const;
    QString removedName() const { return m_removed.name; }

    /// How many of so many favourites stand in a row, so that all are seen as large as can be.
    Q_INVOKABLE int columns(int count, qreal width, qreal height, qreal largest) const
    {
        return HomeLayout::iconColumns(count, width, height, largest);
    }
    /// Starts the application and closes the panel.
    Q_INVOKABLE void launch(const QString &id);
    Q_INVOKABLE void remove(const QString &id);
    Q_INVOKABLE void run(const QString &command, const QString &id);
    Q_INVOKABLE void undoRemove();
    /// The favourite that was removed last can't come back any more.
    Q_INVOKABLE void forgetRemoved();
    /// Moves a favourite by so many places.
    Q_INVOKABLE void move(const QString &id, int by);

    Q_INVOKABLE void startPicking();
    Q_INVOKABLE void stopPicking();
    /// Shows the applications whose name or keywords hold the text, those first that begin with it.
    Q_INVOKABLE void search(const QString &text);
    /// Makes it a favourite, or none any more.
    Q_INVOKABLE void toggle(const QString &id);
    /// Makes the first that was found a favourite.
    Q_INVOKABLE void addFirst();

Q_SIGNALS:
    void changed();
    void pickingChanged();
    void foundChanged();

private:
    void watch(bool isWatched) override;

    struct Removed {
        QString id;
        QString name;
        int place = 0;
    };

    void update();
    void updateFound();
    int placeOf(const QString &id) const;

    FavoriteApps &m_apps;
    PanelPort &m_panel;
    RecordListModel<ApplicationRow> m_favorites;
    RecordListModel<ApplicationRow> m_found;
    RecordListModel<PageCommand> m_commands;
    bool m_isPicking = false;
    QString m_query;
    Removed m_removed;
};

} // namespace velmo
