#pragma once

#include "VelmoUI/Modules/Activity/LiveRows.h"
#include "VelmoUI/Notch/DroppedFiles.h"
#include "VelmoUI/Notch/NotchViewModel.h"
#include "VelmoUI/Notch/PanelIssues.h"

#include <QPointF>
#include <QSizeF>
#include <QtQml/qqmlregistration.h>

namespace velmo {

/// A module in the bar of the open panel.
struct ModuleTab {
    QString id;
    QString title;
    QString symbol;
    bool isSelected = false;
    QString shortcut; ///< "Ctrl+1"; empty from the tenth on

    bool operator==(const ModuleTab &) const = default;
};
BOOST_DESCRIBE_STRUCT(ModuleTab, (), (id, title, symbol, isSelected, shortcut))

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

/// What a panel's window draws, ready to show: the model's state in texts, rows and numbers of the
/// canvas (y downward). Decides nothing.
class NotchContent : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the panel's controller")
    /// "collapsed", "preview", "expanded", "dropTarget" or "dropResult"
    Q_PROPERTY(QString presentation READ presentation NOTIFY presentationChanged)
    Q_PROPERTY(velmo::ShapeAnimator *shape READ shape CONSTANT)
    /// Whether nothing can be seen of the notch's middle.
    Q_PROPERTY(bool hasCutout READ hasCutout NOTIFY metricsChanged)
    Q_PROPERTY(qreal notchWidth READ notchWidth NOTIFY metricsChanged)
    Q_PROPERTY(qreal notchHeight READ notchHeight NOTIFY metricsChanged)
    /// Where the notch's middle lies in the canvas.
    Q_PROPERTY(qreal notchCenterX READ notchCenterX NOTIFY metricsChanged)
    /// The body of the shape in each presentation, whichever is on show: content lies still while
    /// the shape moves.
    Q_PROPERTY(QSizeF liveSize READ liveSize NOTIFY sizesChanged)
    Q_PROPERTY(QSizeF feedbackSize READ feedbackSize NOTIFY sizesChanged)
    Q_PROPERTY(QSizeF previewSize READ previewSize NOTIFY sizesChanged)
    Q_PROPERTY(QSizeF expandedSize READ expandedSize NOTIFY sizesChanged)
    Q_PROPERTY(QSizeF dropTargetSize READ dropTargetSize NOTIFY sizesChanged)
    Q_PROPERTY(QSizeF dropResultSize READ dropResultSize NOTIFY sizesChanged)
    /// How wide the bar of the modules is, which may wait for the pointer to leave it.
    Q_PROPERTY(qreal barWidth READ barWidth NOTIFY sizesChanged)
    Q_PROPERTY(bool isBarHeld READ isBarHeld NOTIFY sizesChanged)
    Q_PROPERTY(bool animated READ isAnimated NOTIFY appearanceChanged)
    Q_PROPERTY(bool reducedMotion READ isReducedMotion NOTIFY presentationChanged)
    /// What every duration is multiplied with.
    Q_PROPERTY(qreal pace READ pace NOTIFY appearanceChanged)
    Q_PROPERTY(QString accent READ accent NOTIFY appearanceChanged)
    Q_PROPERTY(bool isLarge READ isLarge NOTIFY appearanceChanged)

    Q_PROPERTY(bool hasLive READ hasLive NOTIFY liveChanged)
    Q_PROPERTY(QString liveSymbol READ liveSymbol NOTIFY liveChanged)
    Q_PROPERTY(QString liveTitle READ liveTitle NOTIFY liveChanged)
    Q_PROPERTY(QString liveMeaning READ liveMeaning NOTIFY liveChanged)
    Q_PROPERTY(QString liveShortTime READ liveShortTime NOTIFY liveChanged)
    Q_PROPERTY(QString liveSpoken READ liveSpoken NOTIFY liveChanged)
    Q_PROPERTY(qreal liveProgress READ liveProgress NOTIFY liveChanged)

    /// Of this moment, while the panel isn't collapsed.
    Q_PROPERTY(QString clock READ clock NOTIFY clockChanged)
    Q_PROPERTY(QString day READ day NOTIFY clockChanged)

    Q_PROPERTY(bool hasFeedback READ hasFeedback NOTIFY feedbackChanged)
    Q_PROPERTY(QString feedbackSymbol READ feedbackSymbol NOTIFY feedbackChanged)
    Q_PROPERTY(QString feedbackTitle READ feedbackTitle NOTIFY feedbackChanged)
    Q_PROPERTY(QString feedbackDetail READ feedbackDetail NOTIFY feedbackChanged)
    Q_PROPERTY(QString feedbackSpoken READ feedbackSpoken NOTIFY feedbackChanged)
    Q_PROPERTY(QString feedbackStyle READ feedbackStyle NOTIFY feedbackChanged)

    /// The modules left and right of the notch.
    Q_PROPERTY(QAbstractItemModel *leftModules READ leftModules CONSTANT)
    Q_PROPERTY(QAbstractItemModel *rightModules READ rightModules CONSTANT)
    Q_PROPERTY(QUrl pageSource READ pageSource NOTIFY pageChanged)
    Q_PROPERTY(QObject *page READ page NOTIFY pageChanged)
    /// Why the module could not be loaded; empty if it could.
    Q_PROPERTY(QString pageFailure READ pageFailure NOTIFY pageChanged)
    Q_PROPERTY(QString pageFailureTitle READ pageFailureTitle NOTIFY pageChanged)

    /// What went wrong with the user's data, in sentences.
    Q_PROPERTY(QStringList issues READ issues NOTIFY issuesChanged)
    /// Whether what pages show isn't all that was kept.
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY issuesChanged)

    Q_PROPERTY(QAbstractItemModel *dropZones READ dropZones CONSTANT)
    Q_PROPERTY(QAbstractItemModel *droppedItems READ droppedItems CONSTANT)
    Q_PROPERTY(QAbstractItemModel *dropActions READ dropActions CONSTANT)
    Q_PROPERTY(QString droppedTitle READ droppedTitle NOTIFY droppedItemsChanged)
    /// What the last drop moved, as long as that can be taken back.
    Q_PROPERTY(bool canUndoDrop READ canUndoDrop NOTIFY undoChanged)
    Q_PROPERTY(QString undoTitle READ undoTitle NOTIFY undoChanged)
    Q_PROPERTY(QString undoDetail READ undoDetail NOTIFY undoChanged)
    /// The job that brings what was dropped, while it runs.
    Q_PROPERTY(bool hasDropJob READ hasDropJob NOTIFY dropJobChanged)
    Q_PROPERTY(QString dropJobTitle READ dropJobTitle NOTIFY dropJobChanged)
    /// 0 to 1, negative if it isn't known.
    Q_PROPERTY(qreal dropJobProgress READ dropJobProgress NOTIFY dropJobChanged)
    Q_PROPERTY(QString dropJobValue READ dropJobValue NOTIFY dropJobChanged)
    Q_PROPERTY(QString dropJobSpoken READ dropJobSpoken NOTIFY dropJobChanged)
    Q_PROPERTY(bool hasDroplet READ hasDroplet NOTIFY dropletChanged)
    Q_PROPERTY(QPointF dropletStart READ dropletStart NOTIFY dropletChanged)
    Q_PROPERTY(QString dropletSymbol READ dropletSymbol NOTIFY dropletChanged)
    Q_PROPERTY(QUrl dropletImage READ dropletImage NOTIFY dropletChanged)
    /// Milliseconds of the droplet's flight.
    Q_PROPERTY(int dropletFlight READ dropletFlight CONSTANT)

public:
    /// Modules from this place on stand right of the notch.
    static constexpr std::size_t modulesPerSide = 6;

    explicit NotchContent(NotchViewModel &model);

    static QString name(NotchPresentation presentation);

    QString presentation() const { return name(m_model.presentation()); }
    ShapeAnimator *shape() { return &m_model.shape(); }
    bool hasCutout() const { return m_model.metrics().hasHardwareNotch; }
    qreal notchWidth() const { return m_model.metrics().notchSize.width; }
    qreal notchHeight() const { return m_model.metrics().notchSize.height; }
    qreal notchCenterX() const;
    QSizeF liveSize() const { return size(NotchPresentation::collapsed); }
    QSizeF feedbackSize() const { return size(NotchPresentation::collapsed, true); }
    QSizeF previewSize() const { return size(NotchPresentation::preview); }
    QSizeF expandedSize() const { return size(NotchPresentation::expanded); }
    QSizeF dropTargetSize() const { return size(NotchPresentation::dropTarget); }
    QSizeF dropResultSize() const { return size(NotchPresentation::dropResult); }
    qreal barWidth() const { return m_model.heldBarWidth().value_or(expandedSize().width()); }
    bool isBarHeld() const { return m_model.heldBarWidth().has_value(); }
    bool isAnimated() const { return settings().animationsEnabled; }
    bool isReducedMotion() const { return m_model.reducesMotion(); }
    qreal pace() const;
    QString accent() const;
    bool isLarge() const { return settings().panelSize == PanelSize::large; }

    bool hasLive() const { return !liveRows().empty(); }
    QString liveSymbol() const { return firstLive().symbol; }
    QString liveTitle() const { return firstLive().title; }
    QString liveMeaning() const { return firstLive().meaning; }
    QString liveShortTime() const { return firstLive().shortTime; }
    QString liveSpoken() const { return firstLive().spoken; }
    qreal liveProgress() const { return firstLive().progress; }

    /// As "18:40".
    QString clock() const;
    /// As "Sábado, 21 de novembro".
    QString day() const;

    bool hasFeedback() const { return m_model.services().activity.feedback().has_value(); }
    QString feedbackSymbol() const { return m_feedback.symbol; }
    QString feedbackTitle() const { return m_feedback.title; }
    QString feedbackDetail() const { return m_feedback.detail.value_or(QString()); }
    QString feedbackSpoken() const;
    QString feedbackStyle() const;

    QAbstractItemModel *leftModules() { return &m_leftModules; }
    QAbstractItemModel *rightModules() { return &m_rightModules; }
    QUrl pageSource() const { return m_view.source; }
    QObject *page() const { return m_view.page.get(); }
    QString pageFailure() const { return m_pageFailure; }
    QString pageFailureTitle() const;

    QStringList issues() const { return m_issues.texts(); }
    bool isLoading() const { return m_issues.isLoading(); }

    QAbstractItemModel *dropZones() { return &m_dropZones; }
    QAbstractItemModel *droppedItems() { return &m_droppedItems; }
    QAbstractItemModel *dropActions() { return &m_dropActions; }
    QString droppedTitle() const;
    bool canUndoDrop() const { return dropUndo().isOffered(); }
    QString undoTitle() const { return dropUndo().title(); }
    QString undoDetail() const { return dropUndo().detail(); }
    bool hasDropJob() const { return !m_dropJob.id.isEmpty(); }
    QString dropJobTitle() const { return m_dropJob.title; }
    qreal dropJobProgress() const { return m_dropJob.progress; }
    QString dropJobValue() const { return m_dropJob.value; }
    QString dropJobSpoken() const { return m_dropJob.spoken; }
    bool hasDroplet() const { return m_model.droplet().has_value(); }
    QPointF dropletStart() const;
    QString dropletSymbol() const;
    QUrl dropletImage() const;
    int dropletFlight() const;

    Q_INVOKABLE void selectModule(const QString &id) { m_model.selectModule(id); }
    Q_INVOKABLE void removeDropped(const QString &id) { m_model.removeDroppedItem(id); }
    Q_INVOKABLE void performDropAction(const QString &id);
    Q_INVOKABLE void undoDrop() { m_model.undoDrop(); }
    Q_INVOKABLE void cancelDropJob() { m_model.cancelDropJob(); }
    Q_INVOKABLE void retryPage() { m_model.services().modules.retry(m_pageModuleID); }
    Q_INVOKABLE void dismissIssues() { m_issues.dismiss(); }
    Q_INVOKABLE void openSettings();
    Q_INVOKABLE void close() { m_model.send(NotchEvent::dismiss); }

Q_SIGNALS:
    void presentationChanged();
    void metricsChanged();
    void sizesChanged();
    void appearanceChanged();
    void liveChanged();
    void clockChanged();
    void feedbackChanged();
    void pageChanged();
    void issuesChanged();
    void droppedItemsChanged();
    void undoChanged();
    void dropJobChanged();
    void dropletChanged();
    /// The notch swallows.
    void gulped();
    /// The panel was called by a key or a command, and has the keyboard.
    void called();

private:
    const AppSettings &settings() const { return m_model.services().settings.settings(); }
    const DropUndo &dropUndo() const { return m_model.services().dropUndo; }
    const std::vector<LiveRow> &liveRows() const { return m_live.model().records(); }
    QSizeF size(NotchPresentation presentation, bool hasFeedback = false) const;
    LiveRow firstLive() const { return hasLive() ? liveRows().front() : LiveRow(); }
    void updateClock();
    void updatePage();
    void updateModules();
    void updateDropZones();
    void updateDroppedItems();
    void updateDroppedRows();
    void updateDropJob();
    std::vector<DropActionRow> offeredActions() const;

    NotchViewModel &m_model;
    LiveRows m_live;
    PanelIssues m_issues;
    DroppedFiles m_files;     ///< those that have tiles
    ActivityEvent m_feedback; ///< the last one, also while it fades out
    RecordListModel<ModuleTab> m_leftModules;
    RecordListModel<ModuleTab> m_rightModules;
    RecordListModel<DropZoneRow> m_dropZones;
    RecordListModel<DroppedRow> m_droppedItems;
    RecordListModel<DropActionRow> m_dropActions;
    ScheduledTask m_nextMinute;
    LiveRow m_dropJob; ///< without an id while there is none
    QString m_pageModuleID;
    QString m_pageTitle;
    QString m_pageFailure;
    NotchModule::View m_view;
};

} // namespace velmo
