#pragma once

#include "VelmoUI/Design/LazyListModel.h"
#include "VelmoUI/Modules/Clipboard/ClipCollections.h"
#include "VelmoUI/Modules/Clipboard/ClipRow.h"
#include "VelmoUI/Modules/Clipboard/ClipboardServices.h"
#include "VelmoUI/Modules/Frame/PanelPort.h"
#include "VelmoUI/Modules/Frame/TilePage.h"

namespace velmo {

/// The Clipboard page of one panel. What is removed also goes when the page can't be seen any more.
/// Each opening begins with the whole history.
class ClipboardPageModel : public velmo::TilePage {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by its module")
    Q_PROPERTY(velmo::ClipCollections *collections READ collections CONSTANT)
    /// "Tudo", then the kinds, and their symbols.
    Q_PROPERTY(QStringList kinds READ kinds CONSTANT)
    Q_PROPERTY(QStringList kindSymbols READ kindSymbols CONSTANT)
    Q_PROPERTY(int kindIndex READ kindIndex WRITE setKindIndex NOTIFY changed)
    /// Whether copies are taken into the history, and whether they would but for a pause.
    Q_PROPERTY(bool isCapturing READ isCapturing NOTIFY changed)
    Q_PROPERTY(bool isEnabled READ isEnabled NOTIFY changed)
    /// What is asked before something is lost, and the answer that loses it; empty for nothing.
    Q_PROPERTY(QString question READ question NOTIFY changed)
    Q_PROPERTY(QString confirmation READ confirmation NOTIFY changed)

public:
    /// `panel` outlives the page.
    ClipboardPageModel(const ClipboardServices &services, PanelPort &panel);
    ~ClipboardPageModel() override;

    QAbstractItemModel *items() override { return &m_rows; }
    bool isEmpty() const override;
    bool hasFound() const override { return !m_rows.records().empty(); }
    int currentIndex() const override { return m_rows.placeOf(m_current); }
    bool hasSelection() const override { return currentIndex() >= 0; }
    ClipCollections *collections() { return &m_collections; }
    QStringList kinds() const;
    QStringList kindSymbols() const;
    int kindIndex() const { return m_kind ? int(*m_kind) + 1 : 0; }
    void setKindIndex(int index);
    bool isCapturing() const;
    bool isEnabled() const;
    QString question() const { return m_question.text; }
    QString confirmation() const { return m_question.answer; }

    void search(const QString &text) override;
    void press(int index, int modifiers) override;
    bool handleKey(int key, int modifiers) override;
    void run(const QString &command) override;
    void drag(QQuickItem *tile) override;
    /// Puts the current item back on the pasteboard and closes the panel, ready to paste.
    Q_INVOKABLE void copy();

    /// Pauses, goes on, or begins with the user's first leave.
    Q_INVOKABLE void toggleCapture();
    Q_INVOKABLE void openSettings();
    Q_INVOKABLE void askToClear();
    Q_INVOKABLE void askToDelete(const QString &collectionID);
    Q_INVOKABLE void answer(bool isConfirmed);

Q_SIGNALS:
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
        Date date; ///< of its last copy; a later copy shows it again
    };

    void watch(bool isWatched) override;
    /// How many items there are, while copies are taken.
    QString state() const override;
    ClipboardStore &store() const { return m_services.store; }
    void update();
    void showFirst();
    void updateCommands();
    void keepAges();
    std::optional<ClipItem> current() const;
    void open(const ClipItem &item);
    void reveal(const ClipItem &item);
    void remove(const ClipItem &item);

    const ClipboardServices m_services;
    PanelPort &m_panel;
    LazyListModel<ClipItem, ClipRow> m_rows{
        [this](const ClipItem &item) { return ClipRows::make(item, m_services.scheduler.now()); }};
    ClipCollections m_collections;
    QString m_query;
    std::optional<ClipKind> m_kind;
    std::optional<Uuid> m_current;
    Question m_question;
    std::optional<Removed> m_removed; ///< hidden until it is gone or back
    ScheduledTask m_aging;
};

} // namespace velmo
