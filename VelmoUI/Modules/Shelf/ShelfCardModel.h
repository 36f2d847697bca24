#pragma once

#include "VelmoUI/Design/RecordListModel.h"
#include "VelmoUI/Modules/Frame/ModulePage.h"
#include "VelmoUI/Modules/Frame/PanelPort.h"
#include "VelmoUI/Modules/Shelf/ShelfRow.h"
#include "VelmoUI/Modules/Shelf/ShelfServices.h"

#include <QtQml/qqmlregistration.h>

namespace velmo {

/// The latest items of the shelf, for Home.
class ShelfCardModel : public velmo::ModulePage {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by Home")
    Q_PROPERTY(QAbstractItemModel *items READ items CONSTANT)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)
    /// What came of the last opening, else the card's title.
    Q_PROPERTY(QString notice READ notice NOTIFY changed)

public:
    static constexpr std::size_t mostItems = 4;

    /// `panel` outlives the card.
    ShelfCardModel(const ShelfServices &services, PanelPort &panel);

    QAbstractItemModel *items() { return &m_rows; }
    bool isEmpty() const { return m_rows.rowCount() == 0; }
    QString notice() const { return m_notice; }

    Q_INVOKABLE void open(int index);

Q_SIGNALS:
    void changed();

private:
    void watch(bool isWatched) override;
    void update();

    const ShelfServices m_services;
    PanelPort &m_panel;
    RecordListModel<ShelfRow> m_rows;
    QString m_notice;
};

} // namespace velmo
