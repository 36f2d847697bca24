#include "VelmoUI/Composition/StatusItemController.h"

#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoSystem/Input/HotKeyController.h"
#include "VelmoSystem/Ports/StatusArea.h"
#include "VelmoUI/Composition/AppServices.h"
#include "VelmoUI/Design/Symbols.h"
#include "VelmoUI/Notch/NotchCoordinator.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QPainter>

namespace velmo {

namespace {

/// A symbol as menus take it, in the menu's own colour of text.
QIcon menuIcon(const QString &symbol, const QColor &color)
{
    constexpr int side = 32;
    QPixmap picture(side, side);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    QFont font(QStringLiteral("Material Icons"));
    font.setPixelSize(side);
    painter.setFont(font);
    painter.setPen(color);
    painter.drawText(picture.rect(), Qt::AlignCenter, Symbols::glyph(symbol));
    return picture;
}

/// A screen with the notch at its top; light with a dark edge, as nobody knows the bar's colour.
QIcon notchIcon()
{
    QIcon icon;
    for (const int side : {18, 22, 24, 36, 44, 48}) {
        QPixmap picture(side, side);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(side / 18.0, side / 18.0);
        painter.setPen(QPen(QColor(0, 0, 0, 160), 1));
        painter.setBrush(Qt::white);
        painter.drawRoundedRect(QRectF(1.5, 3.5, 15, 11), 2, 2);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::black);
        painter.drawRoundedRect(QRectF(5, 1.5, 8, 6), 1.5, 1.5);
        painter.setCompositionMode(QPainter::CompositionMode_Clear);
        painter.fillRect(QRectF(0, 0, 18, 3), Qt::transparent);
        painter.end();
        icon.addPixmap(picture);
    }
    return icon;
}

} // namespace

StatusItemController::StatusItemController(AppServices &services, NotchCoordinator &coordinator)
    : m_services(services), m_coordinator(coordinator),
      m_observer(services.settings->observe([this](const auto &, const auto &) { update(); }))
{
    // A status area that holds a copy of the menu doesn't say when it opens.
    connect(&coordinator, &NotchCoordinator::userHiddenChanged, this,
            &StatusItemController::buildMenu);
    connect(&m_menu, &QMenu::aboutToShow, this, &StatusItemController::buildMenu);
    connect(&services.platform.statusArea, &StatusArea::becameAvailable, this,
            &StatusItemController::update);
    update();
}

void StatusItemController::update()
{
    buildMenu();
    if (!m_services.settings->settings().showMenuBarIcon) {
        m_item.reset();
        return;
    }
    if (m_item || !m_services.platform.statusArea.isAvailable())
        return;
    m_item = std::make_unique<QSystemTrayIcon>(notchIcon());
    m_item->setToolTip(QStringLiteral("Orvane"));
    m_item->setContextMenu(&m_menu);
    connect(m_item.get(), &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::Trigger)
                    m_coordinator.open();
            });
    m_item->show();
}

void StatusItemController::buildMenu()
{
    m_menu.clear();
    const HotKeySettings &keys = m_services.settings->settings();
    QString open = QStringLiteral("Abrir painel");
    if (keys.toggleHotKeyEnabled)
        open += QStringLiteral("    ") + m_services.hotKeys->displayString(HotKeyAction::toggle);
    m_menu.addAction(open, this, [this] { m_coordinator.open(); });
    const bool isHidden = m_coordinator.isUserHidden();
    m_menu.addAction(menuIcon(isHidden ? QStringLiteral("eye") : QStringLiteral("eye.slash"),
                              m_menu.palette().color(QPalette::WindowText)),
                     isHidden ? QStringLiteral("Mostrar notch") : QStringLiteral("Ocultar notch"),
                     this, [this, isHidden] { m_coordinator.setUserHidden(!isHidden); });
    m_menu.addSeparator();
    m_menu.addAction(QStringLiteral("Ajustes…"), QKeySequence(QStringLiteral("Ctrl+,")), this,
                     [this] { m_services.openSettings(std::nullopt); });
    m_menu.addAction(QStringLiteral("Sair do Orvane"), QKeySequence(QStringLiteral("Ctrl+Q")), this,
                     [] { QCoreApplication::quit(); });
}

} // namespace velmo
