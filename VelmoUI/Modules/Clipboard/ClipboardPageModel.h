#pragma once

#include "VelmoUI/App/AppServices.h"
#include "VelmoUI/Modules/Clipboard/ClipCollections.h"
#include "VelmoUI/Modules/Clipboard/ClipList.h"
#include "VelmoUI/Modules/NotchModule.h"
#include "VelmoUI/Modules/PageCommand.h"

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace velmo {

/// The Clipboard page of one panel. What is removed only leaves the page at first, so that it can
/// come back; it leaves the history after `undoTime`, or when the page can't be seen any more. Each
/// opening begins with the whole history.
class ClipboardPageModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by its module")
    Q_PROPERTY(QAbstractItemModel *items READ items CONSTANT)
    Q_PROPERTY(velmo::ClipCollections *collections READ collections CONSTANT)
    /// Whether the history holds nothing, and whether it holds something of what is looked for.
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)
    Q_PROPERTY(bool hasFound READ hasFound NOTIFY changed)
    /// "Tudo", then the kinds, and their symbols.
    Q_PROPERTY(QStringList kinds READ kinds CONSTANT)
    Q_PROPERTY(QStringList kindSymbols READ kindSymbols CONSTANT)
    Q_PROPERTY(int kindIndex READ kindIndex WRITE setKindIndex NOTIFY changed)
    /// The place of the item that has the keyboard.
    Q_PROPERTY(int currentIndex READ currentIndex NOTIFY changed)
    /// What has just happened, else how many items there are.
    Q_PROPERTY(QString summary READ summary NOTIFY changed)
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY changed)
    /// Whether copies are taken into the history, and whether they would but for a pause.
    Q_PROPERTY(bool isCapturing READ isCapturing NOTIFY changed)
    Q_PROPERTY(bool isEnabled READ isEnabled NOTIFY changed)
    /// What can be done with the current item.
    Q_PROPERTY(QAbstractItemModel *commands READ commands CONSTANT)
    /// What is asked before something is lost, and the answer that loses it; empty for nothing.
    Q_PROPERTY(QString question READ question NOTIFY changed)
    Q_PROPERTY(QString confirmation READ confirmation NOTIFY changed)

public:
    static constexpr Seconds undoTime = 8s;

    explicit ClipboardPageModel(const ModuleContext &context);
    ~ClipboardPageModel() override;

    QAbstractItemModel *items() { return &m_list; }
    ClipCollections *collections() { return &m_collections; }
    bool isEmpty() const;
    bool hasFound() const { return !m_list.items().empty(); }
    QStringList kinds() const;
    QStringList kindSymbols() const;
    int kindIndex() const { return m_kind ? int(*m_kind) + 1 : 0; }
    void setKindIndex(int index);
    int currentIndex() const { return m_list.placeOf(m_current); }
    QString summary() const;
    bool canUndo() const { return m_removed.has_value(); }
    bool isCapturing() const;
    bool isEnabled() const;
    QAbstractItemModel *commands() { return &m_commands; }
    QString question() const { return m_question.text; }
    QString confirmation() const { return m_question.answer; }

    /// Whether the page can be seen. Nothing of it follows the history while it can't.
    Q_INVOKABLE void setWatched(bool watched);
    Q_INVOKABLE void search(const QString &text);
    Q_INVOKABLE void setCurrent(int index);
    /// Whether the key, with these modifiers, means something on the page.
    Q_INVOKABLE bool handleKey(int key, int modifiers);

    /// Puts the current item back on the pasteboard and closes the panel, ready to paste.
    Q_INVOKABLE void copy();
    /// Does what one of `commands` stands for with the current item.
    Q_INVOKABLE void run(const QString &command);
    Q_INVOKABLE void undoRemove();
    /// Drags the current item, seen as `tile`, until it is dropped.
    Q_INVOKABLE void drag(QQuickItem *tile);

    /// Pauses, goes on, or begins with the user's first leave.
    Q_INVOKABLE void toggleCapture();
    Q_INVOKABLE void openSettings();
    Q_INVOKABLE void askToClear();
    Q_INVOKABLE void askToDelete(const QString &collectionID);
    Q_INVOKABLE void answer(bool isConfirmed);

Q_SIGNALS:
    void changed();
    /// The user chooses collections for the current item.
    void collecting();

private:
    struct Question {
        QString text;
        QString answer;
        std::function<void()> confirmed;
    };
    struct Removed {
        Uuid id;
        Date date; ///< of its last copy, a later one brings it back
    };

    ClipboardStore &store() const { return m_context.services.clipboard; }
    void update();
    void showFirst();
    void updateCommands();
    void keepAges();
    std::optional<ClipItem> current() const;
    void open(const ClipItem &item);
    void reveal(const ClipItem &item);
    void remove(const ClipItem &item);
    void removeForGood();
    void say(const QString &notice);

    const ModuleContext m_context;
    ClipList m_list;
    ClipCollections m_collections;
    RecordListModel<PageCommand> m_commands;
    bool m_isWatched = false;
    QString m_query;
    std::optional<ClipKind> m_kind;
    std::optional<Uuid> m_current;
    QString m_notice;
    Question m_question;
    std::optional<Removed> m_removed;
    ScheduledTask m_removal;
    ScheduledTask m_aging;
};

} // namespace velmo
