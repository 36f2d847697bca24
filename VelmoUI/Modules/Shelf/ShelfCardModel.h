#pragma once

#include "VelmoUI/Design/RecordListModel.h"
#include "VelmoUI/Modules/NotchModule.h"
#include "VelmoUI/Modules/Shelf/ShelfRow.h"

#include <QtQml/qqmlregistration.h>

namespace velmo {

/// The latest items of the shelf, for Home.
class ShelfCardModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by Home")
    Q_PROPERTY(QAbstractItemModel *items READ items CONSTANT)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)
    /// What came of the last opening, else the card's title.
    Q_PROPERTY(QString notice READ notice NOTIFY changed)

public:
    static constexpr std::size_t mostItems = 4;

    explicit ShelfCardModel(const ModuleContext &context);

    QAbstractItemModel *items() { return &m_rows; }
    bool isEmpty() const { return m_rows.rowCount() == 0; }
    QString notice() const { return m_notice; }

    Q_INVOKABLE void open(int index);
    Q_INVOKABLE void clearNotice();

Q_SIGNALS:
    void changed();

private:
    void update();

    const ModuleContext m_context;
    RecordListModel<ShelfRow> m_rows;
    QString m_notice;
};

} // namespace velmo
