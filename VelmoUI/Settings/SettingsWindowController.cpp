#include "VelmoUI/Settings/SettingsWindowController.h"

#include "VelmoSystem/Ports/Platform.h"
#include "VelmoUI/Design/IconProvider.h"
#include "VelmoUI/Settings/SettingsWindowModel.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickView>

#include <algorithm>

namespace velmo {

namespace {

constexpr QSize smallest{760, 480};
constexpr QSize first{860, 640};

QUrl windowSource()
{
    return QUrl(QStringLiteral("qrc:/qt/qml/Velmo/Settings/SettingsWindow.qml"));
}

} // namespace

/// An engine of its own, so that colours can differ from the panels'. Its QML is loaded on the
/// engine's thread, which takes longer than the main thread should; then the window shows.
struct SettingsWindowController::Window {
    Window(const SettingsServices &services, SettingsPane pane)
        : model(services, pane), view(&engine, nullptr)
    {
        engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
        engine.addImageProvider(QStringLiteral("icon"), new IconProvider);
        view.setTitle(QStringLiteral("Ajustes do Orvane"));
        view.setResizeMode(QQuickView::SizeRootObjectToView);
        view.setMinimumSize(smallest);
        view.resize(first);
        view.setInitialProperties({{QStringLiteral("model"), QVariant::fromValue(&model)}});
        load(windowSource());
        load(model.paneSource());
    }

    void show()
    {
        isWanted = true;
        const bool isLoading =
            std::ranges::any_of(loaded, [](const auto &file) { return file->isLoading(); });
        if (isLoading)
            return;
        if (view.source().isEmpty())
            view.setSource(windowSource());
        view.show();
        view.raise();
        view.requestActivate();
    }

    void load(const QUrl &file)
    {
        const auto &component = loaded.emplace_back(
            std::make_unique<QQmlComponent>(&engine, file, QQmlComponent::Asynchronous));
        QObject::connect(component.get(), &QQmlComponent::statusChanged, &view, [this] {
            if (isWanted)
                show();
        });
    }

    SettingsWindowModel model;
    QQmlEngine engine;
    std::vector<std::unique_ptr<QQmlComponent>> loaded; ///< or on its way
    QQuickView view;
    bool isWanted = false;
};

SettingsWindowController::SettingsWindowController(const SettingsServices &services)
    : m_services(services)
{
}

SettingsWindowController::~SettingsWindowController() = default;

void SettingsWindowController::show(std::optional<SettingsPane> pane)
{
    m_pane = pane.value_or(m_pane);
    m_closing.cancel();
    m_services.hotKeys.retry(); // so that the page says how things are now
    if (m_window) {
        m_window->model.setPane(m_pane);
    } else {
        m_window = std::make_unique<Window>(m_services, m_pane);
        m_window->view.installEventFilter(this);
    }
    m_window->show();
}

bool SettingsWindowController::eventFilter(QObject *, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        return handleKey(static_cast<const QKeyEvent &>(*event));
    case QEvent::FocusOut:
        m_window->model.hotKeys()->stopRecording();
        return false;
    case QEvent::Close:
        m_pane = m_window->model.pane();
        // Not while the window is still at it.
        m_closing = m_services.platform.scheduler.after(0s, [this] { m_window.reset(); });
        return false;
    default:
        return false;
    }
}

bool SettingsWindowController::handleKey(const QKeyEvent &press)
{
    HotKeysModel &hotKeys = *m_window->model.hotKeys();
    if (hotKeys.isRecording()) {
        hotKeys.record(press);
        return true;
    }
    if (press.modifiers() != Qt::ControlModifier)
        return false;
    switch (press.key()) {
    case Qt::Key_W:
        m_window->view.close();
        return true;
    case Qt::Key_M:
        m_window->view.showMinimized();
        return true;
    case Qt::Key_Q:
        QCoreApplication::quit();
        return true;
    default:
        break;
    }
    if (press.key() < Qt::Key_1 || press.key() > Qt::Key_9)
        return false;
    m_window->model.selectPane(press.key() - Qt::Key_1);
    return true;
}

} // namespace velmo
