#pragma once

#include "VelmoCore/Shelf/DropUndo.h"
#include "VelmoUI/Design/RecordListModel.h"
#include "VelmoUI/Modules/Frame/LiveRows.h"
#include "VelmoUI/Notch/DropSurface.h"
#include "VelmoUI/Notch/DroppedFiles.h"

#include <QPointF>
#include <QtQml/qqmlregistration.h>

namespace velmo {

/// A part of the drop surface.
struct DropZoneRow {
    QString id;
    QString symbol;
    QString title;
    QString detail;
    bool isTargeted = false;

    bool operator==(const DropZoneRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(DropZoneRow, (), (id, symbol, title, detail, isTargeted))

/// Something to do with what was dropped.
struct DropActionRow {
    QString id;
    QString symbol;
    QString title;

    bool operator==(const DropActionRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(DropActionRow, (), (id, symbol, title))

/// A dropped thing on the result surface.
struct DroppedRow {
    QString id;
    QString symbol;
    QString title;
    QString detail;
    QUrl image;      ///< a picture of it, empty if it has none
    QString removal; ///< the name of the button that takes it away

    bool operator==(const DroppedRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(DroppedRow, (), (id, symbol, title, detail, image, removal))

/// What QML draws of a drop surface. Decides nothing.
class DropContent : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the panel's content")
    Q_PROPERTY(QAbstractItemModel *zones READ zones CONSTANT)
    Q_PROPERTY(QAbstractItemModel *items READ items CONSTANT)
    Q_PROPERTY(QAbstractItemModel *actions READ actions CONSTANT)
    Q_PROPERTY(QString title READ title NOTIFY itemsChanged)
    /// What the last drop moved, as long as that can be taken back.
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY undoChanged)
    Q_PROPERTY(QString undoTitle READ undoTitle NOTIFY undoChanged)
    Q_PROPERTY(QString undoDetail READ undoDetail NOTIFY undoChanged)
    /// The job that carries what was dropped, while it runs.
    Q_PROPERTY(bool hasJob READ hasJob NOTIFY jobChanged)
    Q_PROPERTY(QString jobTitle READ jobTitle NOTIFY jobChanged)
    /// 0 to 1, negative if it isn't known.
    Q_PROPERTY(qreal jobProgress READ jobProgress NOTIFY jobChanged)
    Q_PROPERTY(QString jobValue READ jobValue NOTIFY jobChanged)
    Q_PROPERTY(QString jobSpoken READ jobSpoken NOTIFY jobChanged)
    Q_PROPERTY(bool hasDroplet READ hasDroplet NOTIFY dropletChanged)
    Q_PROPERTY(QPointF dropletStart READ dropletStart NOTIFY dropletChanged)
    Q_PROPERTY(QString dropletSymbol READ dropletSymbol NOTIFY dropletChanged)
    Q_PROPERTY(QUrl dropletImage READ dropletImage NOTIFY dropletChanged)
    /// Milliseconds of the droplet's flight.
    Q_PROPERTY(int dropletFlight READ dropletFlight CONSTANT)

public:
    /// All of them outlive this object.
    DropContent(DropSurface &surface, const DropServices &services, LiveRows &live,
                Scheduler &scheduler);

    QAbstractItemModel *zones() { return &m_zones; }
    QAbstractItemModel *items() { return &m_items; }
    QAbstractItemModel *actions() { return &m_actions; }
    QString title() const;
    bool canUndo() const { return m_services.undo.isOffered(); }
    QString undoTitle() const { return m_services.undo.title(); }
    QString undoDetail() const { return m_services.undo.detail(); }
    bool hasJob() const { return !m_job.id.isEmpty(); }
    QString jobTitle() const { return m_job.title; }
    qreal jobProgress() const { return m_job.progress; }
    QString jobValue() const { return m_job.value; }
    QString jobSpoken() const { return m_job.spoken; }
    bool hasDroplet() const { return m_surface.droplet().has_value(); }
    QPointF dropletStart() const;
    QString dropletSymbol() const { return dropletRow().symbol; }
    QUrl dropletImage() const { return dropletRow().image; }
    int dropletFlight() const;

    Q_INVOKABLE void remove(const QString &id) { m_surface.removeItem(id); }
    Q_INVOKABLE void perform(const QString &action);
    Q_INVOKABLE void undo() { m_surface.undo(); }
    Q_INVOKABLE void cancelJob() { m_surface.cancelJob(); }

Q_SIGNALS:
    void itemsChanged();
    void undoChanged();
    void jobChanged();
    void dropletChanged();
    /// The notch swallows.
    void gulped();

private:
    void updateZones();
    void updateItems();
    void updateRows();
    void updateJob();
    std::vector<DropActionRow> offeredActions() const;
    DroppedRow dropletRow() const;

    DropSurface &m_surface;
    const DropServices m_services;
    LiveRows &m_live;
    DroppedFiles m_files; ///< those that have tiles
    RecordListModel<DropZoneRow> m_zones;
    RecordListModel<DroppedRow> m_items;
    RecordListModel<DropActionRow> m_actions;
    LiveRow m_job; ///< without an id while there is none
};

} // namespace velmo
