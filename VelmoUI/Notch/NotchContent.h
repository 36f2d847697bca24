#pragma once

#include "VelmoUI/Design/Feedback.h"
#include "VelmoUI/Notch/DropContent.h"
#include "VelmoUI/Notch/MailBanner.h"
#include "VelmoUI/Notch/PanelIssues.h"
#include "VelmoUI/Notch/PanelPages.h"

#include <QSizeF>

namespace velmo {

/// What a panel's window draws, ready to show: the model's state in texts, rows and numbers of the
/// canvas (y downward). Decides nothing.
class NotchContent : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the panel's controller")
    Q_PROPERTY(
        velmo::NotchContent::Presentation presentation READ presentation NOTIFY presentationChanged)
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
    Q_PROPERTY(QSizeF bannerSize READ bannerSize NOTIFY sizesChanged)
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
    /// The first live row, all empty without one.
    Q_PROPERTY(velmo::LiveRow live READ firstLive NOTIFY liveChanged)
    /// Of this moment, while the panel isn't collapsed.
    Q_PROPERTY(QString clock READ clock NOTIFY clockChanged)
    Q_PROPERTY(QString day READ day NOTIFY clockChanged)
    Q_PROPERTY(bool hasFeedback READ hasFeedback NOTIFY feedbackChanged)
    Q_PROPERTY(QString feedbackSymbol READ feedbackSymbol NOTIFY feedbackChanged)
    Q_PROPERTY(QString feedbackTitle READ feedbackTitle NOTIFY feedbackChanged)
    Q_PROPERTY(QString feedbackDetail READ feedbackDetail NOTIFY feedbackChanged)
    Q_PROPERTY(QString feedbackSpoken READ feedbackSpoken NOTIFY feedbackChanged)
    Q_PROPERTY(velmo::Feedback::Style feedbackStyle READ feedbackStyle NOTIFY feedbackChanged)

    /// What is next, of the first module that has something; empty without.
    Q_PROPERTY(QString peekSymbol READ peekSymbol NOTIFY peekChanged)
    Q_PROPERTY(QString peekTitle READ peekTitle NOTIFY peekChanged)
    Q_PROPERTY(QString peekDetail READ peekDetail NOTIFY peekChanged)
    Q_PROPERTY(velmo::PanelPages *pages READ pages CONSTANT)
    Q_PROPERTY(velmo::DropContent *drop READ drop CONSTANT)
    Q_PROPERTY(velmo::MailBanner *mailBanner READ mailBanner CONSTANT)
    /// What went wrong with the user's data, in sentences.
    Q_PROPERTY(QStringList issues READ issues NOTIFY issuesChanged)
    /// Whether what pages show isn't all that was kept.
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY issuesChanged)

public:
    /// `NotchPresentation` for QML.
    enum Presentation { Collapsed, Preview, Expanded, DropTarget, DropResult };
    Q_ENUM(Presentation)

    /// `model` outlives this object.
    NotchContent(NotchViewModel &model, const PanelServices &services);

    Presentation presentation() const { return Presentation(m_model.presentation()); }
    ShapeAnimator *shape() { return &m_model.shape(); }
    bool hasCutout() const { return m_model.metrics().hasHardwareNotch; }
    qreal notchWidth() const { return m_model.metrics().notchSize.width; }
    qreal notchHeight() const { return m_model.metrics().notchSize.height; }
    qreal notchCenterX() const;
    QSizeF liveSize() const { return size(NotchPresentation::collapsed); }
    QSizeF feedbackSize() const { return size(NotchPresentation::collapsed, true); }
    QSizeF bannerSize() const;
    QSizeF previewSize() const { return size(NotchPresentation::preview); }
    QSizeF expandedSize() const { return size(NotchPresentation::expanded); }
    QSizeF dropTargetSize() const { return size(NotchPresentation::dropTarget); }
    QSizeF dropResultSize() const { return size(NotchPresentation::dropResult); }
    qreal barWidth() const { return m_model.heldBarWidth().value_or(expandedSize().width()); }
    bool isBarHeld() const { return m_model.heldBarWidth().has_value(); }
    bool isAnimated() const { return settings().animationsEnabled; }
    bool isReducedMotion() const { return m_model.reducesMotion(); }
    qreal pace() const { return NotchMotions::pace(settings().animationSpeed); }
    QString accent() const;
    bool isLarge() const { return settings().panelSize == PanelSize::large; }

    bool hasLive() const { return !m_live.model().records().empty(); }
    LiveRow firstLive() const;
    /// As "18:40".
    QString clock() const;
    /// As "Sábado, 21 de novembro".
    QString day() const;
    bool hasFeedback() const { return m_services.activity.feedback().has_value(); }
    QString feedbackSymbol() const { return m_feedback.symbol; }
    QString feedbackTitle() const { return m_feedback.title; }
    QString feedbackDetail() const { return m_feedback.detail.value_or(QString()); }
    QString feedbackSpoken() const;
    Feedback::Style feedbackStyle() const { return Feedback::of(m_feedback.style); }

    QString peekSymbol() const { return m_peek.symbol; }
    QString peekTitle() const { return m_peek.title; }
    QString peekDetail() const { return m_peek.detail; }

    PanelPages *pages() { return &m_pages; }
    DropContent *drop() { return &m_drop; }
    MailBanner *mailBanner() { return &m_mailBanner; }
    QStringList issues() const { return m_issues.texts(); }
    bool isLoading() const { return m_issues.isLoading(); }

    Q_INVOKABLE void dismissIssues() { m_issues.dismiss(); }
    Q_INVOKABLE void openSettings() { m_model.openSettings(std::nullopt); }
    Q_INVOKABLE void close() { m_model.close(); }

Q_SIGNALS:
    void presentationChanged();
    void metricsChanged();
    void sizesChanged();
    void appearanceChanged();
    void liveChanged();
    void clockChanged();
    void feedbackChanged();
    void issuesChanged();
    void peekChanged();
    /// The panel was called by a key or a command, and has the keyboard.
    void called();

private:
    const AppSettings &settings() const { return m_services.settings.settings(); }
    QSizeF size(NotchPresentation presentation, bool hasFeedback = false) const;
    void updateClock();
    void updatePeek();

    NotchViewModel &m_model;
    const PanelServices m_services;
    LiveRows m_live;
    PanelIssues m_issues;
    PanelPages m_pages;
    DropContent m_drop;
    MailBanner m_mailBanner;
    NotchModule::Peek m_peek;
    ActivityEvent m_feedback; ///< the last one, also while it fades out
    ScheduledTask m_nextMinute;
};

} // namespace velmo
