#include "VelmoUI/Notch/NotchCoordinator.h"

#include "VelmoCore/Foundation/Overloaded.h"
#include "VelmoCore/HotKeys/KeyNames.h"
#include "VelmoCore/Notch/DisplaySelection.h"
#include "VelmoSystem/Ports/Platform.h"
#include "VelmoUI/Design/IconProvider.h"
#include "VelmoUI/Design/MenuPresence.h"
#include "VelmoUI/Design/ThumbnailProvider.h"

#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QKeyEvent>
#include <QQuickItem>
#include <QScopedValueRollback>

#include <algorithm>
#include <set>

namespace velmo {

namespace {

QJsonArray jsonFrom(const std::array<int, 4> &frame)
{
    return {frame[0], frame[1], frame[2], frame[3]};
}

/// In a panel the Ctrl key is `command`.
KeyCombo panelKey(std::uint32_t keyCode, Qt::KeyboardModifiers modifiers)
{
    KeyCombo key{keyCode, {}};
    const auto add = [&](Qt::KeyboardModifier held, KeyModifiers bit) {
        if (modifiers.testFlag(held))
            key.modifiers = key.modifiers | bit;
    };
    add(Qt::ControlModifier, KeyCombo::command);
    add(Qt::ShiftModifier, KeyCombo::shift);
    add(Qt::AltModifier, KeyCombo::option);
    add(Qt::MetaModifier, KeyCombo::control);
    return key;
}

} // namespace

NotchCoordinator::NotchCoordinator(const PanelServices &services,
                                   std::unique_ptr<PanelEngine> engine)
    : m_services(services), m_engine(std::move(engine)),
      m_preloader(*m_engine, services.platform.scheduler), m_mouse(services.platform.pointer),
      m_drag(services.platform.dragPasteboard),
      m_fullscreen(services.platform.workspace, services.platform.displays,
                   services.platform.scheduler)
{
    m_engine->addImageProvider(QStringLiteral("icon"), new IconProvider);
    m_engine->addImageProvider(
        QStringLiteral("thumbnail"),
        new ThumbnailProvider(services.platform.thumbnailer, services.platform.scheduler));
    for (NotchModule *module : services.modules.all())
        module->prepare(*m_engine);
}

NotchCoordinator::~NotchCoordinator()
{
    qGuiApp->removeEventFilter(this); // the panels' last events
}

void NotchCoordinator::start()
{
    rebuildScreens();
    m_mouse.start([this](const MouseEventMonitor::Event &event) { route(event); });
    qGuiApp->installEventFilter(this);
    m_fullscreen.onChange = [this] { applyVisibility(); };
    m_fullscreen.start();

    Workspace &workspace = m_services.platform.workspace;
    connect(&m_services.platform.displays, &Displays::changed, this,
            &NotchCoordinator::rebuildScreens);
    connect(&workspace, &Workspace::didWake, this, [this] { reassertOrder(true); });
    connect(&workspace, &Workspace::activeSpaceChanged, this, [this] { reassertOrder(true); });
    connect(&workspace, &Workspace::windowManagerChanged, this, [this] { reassertOrder(true); });
    connect(&workspace, &Workspace::windowsChanged, this, [this] { reassertOrder(false); });
    m_settings =
        m_services.settings.observe([this](const AppSettings &before, const AppSettings &after) {
            settingsChanged(before, after);
        });
    m_preloader.start();
}

void NotchCoordinator::open()
{
    if (auto *controller = commandTarget())
        controller->open();
}

void NotchCoordinator::open(const Route &route)
{
    if (auto *controller = commandTarget())
        controller->open(route);
}

void NotchCoordinator::openFiles(const std::vector<QUrl> &urls)
{
    auto *controller = commandTarget();
    if (!controller || urls.empty())
        return;
    std::vector<DroppedItem> items;
    for (const QUrl &url : urls) {
        const DroppedItem item{DroppedItem::File{url}};
        if (std::ranges::find(items, item) == items.end())
            items.push_back(item);
    }
    controller->model().send(NotchEvent::dragEntered);
    controller->model().drop().receive(items);
}

void NotchCoordinator::toggleFromHotKey()
{
    auto *preferred = commandTarget();
    for (const auto &[id, controller] : m_controllers) {
        if (controller.get() != preferred)
            controller->model().send(NotchEvent::dismiss);
    }
    if (preferred)
        preferred->model().send(NotchEvent::hotKey);
}

void NotchCoordinator::setUserHidden(bool hidden)
{
    if (hidden == m_isUserHidden)
        return;
    m_isUserHidden = hidden;
    applyVisibility();
    Q_EMIT userHiddenChanged();
}

bool NotchCoordinator::isAnyPanelOpen() const
{
    return std::ranges::any_of(m_controllers,
                               [](const auto &entry) { return entry.second->model().isOpen(); });
}

bool NotchCoordinator::isAnyPanelShown() const
{
    return std::ranges::any_of(m_controllers,
                               [](const auto &entry) { return entry.second->isVisible(); });
}

QString NotchCoordinator::statusText() const
{
    QJsonArray displays;
    for (const auto &[id, controller] : m_controllers) {
        const NotchViewModel &model = controller->model();
        const NotchLayoutContext context = model.layoutContext();
        const auto frame = [&, display = id](const Rect &rect) {
            return jsonFrom(m_services.platform.displays.nativeFrame(display, rect));
        };
        const auto *module = model.presentation() == NotchPresentation::expanded
                                 ? model.modules().current()
                                 : nullptr;
        displays.append(QJsonObject{
            {QStringLiteral("id"), qint64(id)},
            {QStringLiteral("name"), m_screens.at(id).name},
            {QStringLiteral("visible"), controller->isVisible()},
            {QStringLiteral("presentation"), presentationName(model.presentation())},
            {QStringLiteral("module"), module ? QJsonValue(module->id()) : QJsonValue()},
            {QStringLiteral("shape"), frame(model.frame())},
            {QStringLiteral("canvas"), frame(NotchLayout::canvasFrame(context))},
        });
    }
    QJsonArray live;
    for (const LiveActivity &activity : m_services.activity.live())
        live.append(activity.id);
    const auto &feedback = m_services.activity.feedback();
    QJsonObject status{
        {QStringLiteral("hidden"), m_isUserHidden},
        {QStringLiteral("displays"), displays},
        {QStringLiteral("live"), live},
        {QStringLiteral("feedback"), feedback ? QJsonValue(feedback->title) : QJsonValue()},
    };
    for (const NotchModule *one : m_services.modules.all())
        status.insert(one->id(), one->status()); // inserts nothing without one
    return QString::fromUtf8(QJsonDocument(status).toJson(QJsonDocument::Compact));
}

void NotchCoordinator::debugDropAnimation(const QString &file, Point point)
{
    if (auto *controller = commandTarget()) {
        controller->model().send(NotchEvent::dragEntered);
        controller->performDrop(point, {DroppedItem{DroppedItem::File{QUrl::fromLocalFile(file)}}});
    }
}

bool NotchCoordinator::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    if (type == QEvent::InputMethod) {
        const auto *item = qobject_cast<QQuickItem *>(watched);
        const auto &input = static_cast<QInputMethodEvent &>(*event);
        const bool writes = !input.preeditString().isEmpty() || !input.commitString().isEmpty() ||
                            !watched->property("preeditText").toString().isEmpty();
        if (auto *own = item && writes ? controllerOf(item->window()) : nullptr)
            own->handleTyping();
        return false;
    }
    const bool isCrossing = type == QEvent::Enter || type == QEvent::Leave;
    if ((!isCrossing && type != QEvent::KeyPress && type != MenuEvent::kind()) ||
        !watched->isWindowType())
        return false;
    auto *own = controllerOf(watched);
    if (!own)
        return false;
    if (isCrossing) { // programs may set the pointer down without a motion
        if (!m_isButtonDown)
            own->handleMouseMoved(m_services.platform.pointer.location());
        return false;
    }
    if (type == MenuEvent::kind()) {
        auto &change = static_cast<MenuEvent &>(*event);
        own->handleMenu(change.menu, change.begins);
        return true;
    }
    if (m_isOfferingKey)
        return false;
    const bool isUsed = handleKey(*own, static_cast<QKeyEvent &>(*event));
    if (!isUsed && own->isEditingText())
        own->handleTyping();
    return isUsed;
}

NotchWindowController *NotchCoordinator::controllerOf(const QObject *window)
{
    const auto own = std::ranges::find_if(
        m_controllers, [&](const auto &entry) { return &entry.second->panel().view() == window; });
    return own == m_controllers.end() ? nullptr : own->second.get();
}

bool NotchCoordinator::handleKey(NotchWindowController &controller, const QKeyEvent &press)
{
    const auto printed = KeyNames::keyCode(press.nativeVirtualKey());
    const auto place = KeyNames::keyCodeAt(press.nativeScanCode());
    const auto keyCode = printed ? printed : place;
    if (!keyCode)
        return false;
    const KeyCombo key = panelKey(*keyCode, press.modifiers());
    if (keyCode == KeyNames::keyQ && key.modifiers == KeyCombo::command) {
        QCoreApplication::quit();
        return true;
    }
    const bool isArrow = keyCode == KeyNames::keyLeft || keyCode == KeyNames::keyRight;
    if (isArrow && controller.isEditingText())
        return false;
    // A question or a search in the page, or what it moves by key, goes before the panel does.
    if ((keyCode == KeyNames::keyEscape || (isArrow && key.modifiers.contains(KeyCombo::shift))) &&
        isTakenByPage(controller, press))
        return true;
    if (controller.handleKey(key))
        return true;
    // A layout without Latin letters doesn't say which of Ctrl's keys it is: the place does.
    const auto letter = printed ? std::nullopt : KeyNames::keysym(*keyCode);
    if (letter && press.key() > 0xff && key.modifiers.contains(KeyCombo::command)) {
        const QKeyEvent latin(press.type(), int(QChar(*letter).toUpper().unicode()),
                              press.modifiers(), press.nativeScanCode(), *letter,
                              press.nativeModifiers());
        return isTakenByPage(controller, latin);
    }
    // The panel's keys go by their place too. Where the layout has put another key of the page's
    // there, as undo on W's, the page has it.
    if (!place || place == keyCode || !key.modifiers.contains(KeyCombo::command))
        return false;
    if (!isTakenByPage(controller, press))
        controller.handleKey(panelKey(*place, press.modifiers()));
    return true; // it has been to both
}

bool NotchCoordinator::isTakenByPage(NotchWindowController &controller, const QKeyEvent &press)
{
    const QScopedValueRollback offering(m_isOfferingKey, true);
    const std::unique_ptr<QKeyEvent> offer(press.clone());
    offer->ignore();
    QCoreApplication::sendEvent(&controller.panel().view(), offer.get());
    return offer->isAccepted();
}

NotchWindowController *NotchCoordinator::preferredController()
{
    if (const auto id = m_services.platform.displays.screenUnderMouse()) {
        const auto under = m_controllers.find(*id);
        if (under != m_controllers.end() && under->second->isVisible())
            return under->second.get();
    }
    const auto visible = std::ranges::find_if(
        m_controllers, [](const auto &entry) { return entry.second->isVisible(); });
    return visible == m_controllers.end() ? nullptr : visible->second.get();
}

NotchWindowController *NotchCoordinator::commandTarget()
{
    if (m_isUserHidden)
        setUserHidden(false);
    return preferredController();
}

void NotchCoordinator::rebuildScreens()
{
    const auto screens = m_services.platform.displays.allDescriptors();
    const auto targets =
        DisplaySelection::targets(m_services.settings.settings().displayMode, screens);
    const std::set<DisplayID> wanted(targets.begin(), targets.end());
    std::erase_if(m_controllers, [&](const auto &entry) { return !wanted.contains(entry.first); });
    m_screens.clear();
    for (const ScreenDescriptor &screen : screens) {
        if (!wanted.contains(screen.displayID))
            continue;
        m_screens[screen.displayID] = screen;
        auto &controller = m_controllers[screen.displayID];
        if (controller)
            controller->setMetrics(NotchGeometry::metrics(screen));
        else
            controller = std::make_unique<NotchWindowController>(screen, m_services, *m_engine);
    }
    applyVisibility();
}

void NotchCoordinator::applyVisibility()
{
    const bool hidesInFullscreen =
        m_services.settings.settings().fullscreenBehavior == FullscreenBehavior::hide;
    for (const auto &[id, controller] : m_controllers) {
        const bool covered = m_fullscreen.fullscreenDisplays().contains(id);
        controller->setVisible(!m_isUserHidden && !(hidesInFullscreen && covered));
    }
}

void NotchCoordinator::reassertOrder(bool repair)
{
    for (const auto &[id, controller] : m_controllers)
        controller->reassertOrder(repair);
}

void NotchCoordinator::settingsChanged(const AppSettings &before, const AppSettings &after)
{
    if (before.displayMode != after.displayMode)
        rebuildScreens();
    if (before.panelSize != after.panelSize || before.nonNotchStyle != after.nonNotchStyle) {
        for (const auto &[id, controller] : m_controllers)
            controller->reposition();
    }
    if (before.fullscreenBehavior != after.fullscreenBehavior)
        applyVisibility();
}

void NotchCoordinator::route(const MouseEventMonitor::Event &event)
{
    const auto forEach = [this](auto &&body) {
        for (const auto &[id, controller] : m_controllers)
            body(*controller);
    };
    std::visit(overloaded{
                   [&](const MouseEventMonitor::Moved &moved) {
                       forEach([&](auto &controller) { controller.handleMouseMoved(moved.point); });
                   },
                   [&](const MouseEventMonitor::Down &down) {
                       m_isButtonDown = true;
                       m_drag.mouseDown();
                       m_dragStartedInPanel = isPanelWindow(down.window);
                       forEach([&](auto &controller) { controller.handleMouseDown(down.window); });
                   },
                   [&](const MouseEventMonitor::Dragged &dragged) {
                       if (m_dragStartedInPanel || !m_drag.mouseDragged())
                           return;
                       forEach([&](auto &controller) { controller.handleDrag(dragged.point); });
                   },
                   [&](const MouseEventMonitor::Up &) {
                       m_isButtonDown = false;
                       if (m_drag.mouseUp())
                           forEach([](auto &controller) { controller.handleDragEnded(); });
                   },
               },
               event);
}

bool NotchCoordinator::isPanelWindow(WindowID window)
{
    return window != 0 && std::ranges::any_of(m_controllers, [&](const auto &entry) {
               return entry.second->panel().window().id() == window;
           });
}

} // namespace velmo
