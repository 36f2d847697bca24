#pragma once

#include "VelmoUI/Design/RecordListModel.h"
#include "VelmoUI/Modules/Clipboard/ClipRow.h"
#include "VelmoUI/Modules/NotchModule.h"

#include <QtQml/qqmlregistration.h>

namespace velmo {

/// The latest copies, for Home.
class ClipboardCardModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by Home")
    Q_PROPERTY(QAbstractItemModel *items READ items CONSTANT)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)

public:
    static constexpr std::size_t mostItems = 4;

    explicit ClipboardCardModel(const ModuleContext &context);

    QAbstractItemModel *items() { return &m_rows; }
    bool isEmpty() const { return m_rows.rowCount() == 0; }

    /// Puts it back on the pasteboard and closes the panel, ready to paste.
    Q_INVOKABLE void copy(int index);
    /// Tells the ages anew.
    Q_INVOKABLE void update();

Q_SIGNALS:
    void changed();

private:
    const ModuleContext m_context;
    RecordListModel<ClipRow> m_rows;
};

} // namespace velmo
