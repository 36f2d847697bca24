#pragma once

#include "VelmoUI/Design/RecordListModel.h"
#include "VelmoUI/Modules/Frame/ModulePage.h"
#include "VelmoUI/Modules/Frame/PageCommand.h"
#include "VelmoUI/Modules/Frame/UndoStack.h"

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace velmo {

/// A page that shows what the user keeps as tiles in a row, to search, to drag, to remove and to
/// get back. What is removed only leaves the page at first; it is gone once it can't come back.
class TilePage : public velmo::ModulePage {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by its module")
    Q_PROPERTY(QAbstractItemModel *items READ items CONSTANT)
    /// Whether anything is kept, or can come back, and whether anything is found of it.
    Q_PROPERTY(bool hasTiles READ hasTiles NOTIFY changed)
    Q_PROPERTY(bool hasFound READ hasFound NOTIFY changed)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)
    /// The place of the tile that has the keyboard.
    Q_PROPERTY(int currentIndex READ currentIndex NOTIFY changed)
    Q_PROPERTY(bool hasSelection READ hasSelection NOTIFY changed)
    /// What has just happened, else what there is.
    Q_PROPERTY(QString summary READ summary NOTIFY changed)
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY changed)
    /// What can be done with the selection.
    Q_PROPERTY(QAbstractItemModel *commands READ commands CONSTANT)

public:
    virtual QAbstractItemModel *items() = 0;
    virtual bool isEmpty() const = 0;
    virtual bool hasFound() const = 0;
    virtual int currentIndex() const = 0;
    virtual bool hasSelection() const = 0;
    QString summary() const;
    bool canUndo() const { return !m_undo.isEmpty(); }
    bool hasTiles() const { return !isEmpty() || canUndo(); }
    QAbstractItemModel *commands() { return &m_commands; }

    Q_INVOKABLE virtual void search(const QString &text) = 0;
    Q_INVOKABLE virtual void press(int index, int modifiers) = 0;
    /// Whether the key, with these modifiers, means something on the page.
    Q_INVOKABLE virtual bool handleKey(int key, int modifiers) = 0;
    /// Does what one of `commands` stands for with the selection.
    Q_INVOKABLE virtual void run(const QString &command) = 0;
    Q_INVOKABLE void undoRemove() { m_undo.undo(); }
    /// Drags the selection, seen as `tile`, until it is dropped.
    Q_INVOKABLE virtual void drag(QQuickItem *tile) = 0;

Q_SIGNALS:
    void changed();

protected:
    explicit TilePage(Scheduler &scheduler);

    virtual QString state() const = 0;
    void say(const QString &notice);

    RecordListModel<PageCommand> m_commands;
    UndoStack m_undo;
    QString m_notice; ///< what has just happened
};

} // namespace velmo
