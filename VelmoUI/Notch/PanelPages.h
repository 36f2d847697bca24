#pragma once

#include "VelmoUI/Design/RecordListModel.h"
#include "VelmoUI/Notch/NotchViewModel.h"

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

/// The modules of one panel for QML, and the page of the one on show.
class PanelPages : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the panel's content")
    /// The modules left and right of the notch.
    Q_PROPERTY(QAbstractItemModel *left READ left CONSTANT)
    Q_PROPERTY(QAbstractItemModel *right READ right CONSTANT)
    Q_PROPERTY(QUrl source READ source NOTIFY pageChanged)
    Q_PROPERTY(velmo::ModulePage *page READ page NOTIFY pageChanged)
    /// Why the module could not be loaded; empty if it could.
    Q_PROPERTY(QString failure READ failure NOTIFY pageChanged)
    Q_PROPERTY(QString failureTitle READ failureTitle NOTIFY pageChanged)

public:
    /// Modules from this place on stand right of the notch.
    static constexpr std::size_t modulesPerSide = 6;

    /// Both outlive this object.
    PanelPages(NotchViewModel &panel, ModuleRegistry &registry);
    ~PanelPages() override;

    QAbstractItemModel *left() { return &m_left; }
    QAbstractItemModel *right() { return &m_right; }
    QUrl source() const { return m_view.source; }
    ModulePage *page() const { return m_view.page.get(); }
    QString failure() const { return m_failure; }
    QString failureTitle() const
    {
        return QStringLiteral("%1 não pôde ser carregado").arg(m_title);
    }

    Q_INVOKABLE void select(const QString &id) { m_panel.modules().select(id); }
    Q_INVOKABLE void retry() { m_registry.retry(m_id); }
    /// Whether QML shows the page: what is asked of one waits until then.
    Q_INVOKABLE void setLoaded(bool isLoaded);

Q_SIGNALS:
    void pageChanged();

private:
    void updateTabs();
    void updatePage();
    void makePage(NotchModule &module);
    void follow();

    NotchViewModel &m_panel;
    ModuleRegistry &m_registry;
    RecordListModel<ModuleTab> m_left;
    RecordListModel<ModuleTab> m_right;
    QString m_id; ///< of the module whose page it is
    QString m_title;
    QString m_failure;
    NotchModule::View m_view;
    bool m_isLoaded = false;
};

} // namespace velmo
