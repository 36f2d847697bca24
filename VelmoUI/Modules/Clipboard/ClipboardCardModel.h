#pragma once

#include "VelmoUI/Design/RecordListModel.h"
#include "VelmoUI/Modules/Clipboard/ClipRow.h"
#include "VelmoUI/Modules/Clipboard/ClipboardServices.h"
#include "VelmoUI/Modules/Frame/ModulePage.h"
#include "VelmoUI/Modules/Frame/PanelPort.h"

#include <QtQml/qqmlregistration.h>

namespace velmo {

/// The latest copies, for Home.
class ClipboardCardModel : public velmo::ModulePage {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by Home")
    Q_PROPERTY(QAbstractItemModel *items READ items CONSTANT)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)

public:
    static constexpr std::size_t mostItems = 4;

    /// `panel` outlives the card.
    ClipboardCardModel(const ClipboardServices &services, PanelPort &panel);

    QAbstractItemModel *items() { return &m_rows; }
    bool isEmpty() const { return m_rows.rowCount() == 0; }

    /// Puts it back on the pasteboard and closes the panel, ready to paste.
    Q_INVOKABLE void copy(int index);

Q_SIGNALS:
    void changed();

private:
    void watch(bool isWatched) override;
    void update();

    const ClipboardServices m_services;
    PanelPort &m_panel;
    RecordListModel<ClipRow> m_rows;
};

} // namespace velmo
