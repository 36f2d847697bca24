#include "tests/VelmoUI/PanelFixture.h"

#include <QGuiApplication>
#include <QJsonDocument>

#include <stdexcept>

namespace velmo {

PanelFixture::PanelFixture() : coordinator(services.panels(), std::make_unique<PanelEngine>())
{
    change([](AppSettings &next) { next.animationsEnabled = false; });
    for (const char16_t *id : {u"um", u"dois", u"três"})
        FakeModule::addTo(*services.modules, QString::fromUtf16(id));
    desktop.movePointer(outside);
}

PanelFixture::~PanelFixture() = default;

QJsonObject PanelFixture::status() const
{
    return QJsonDocument::fromJson(coordinator.statusText().toUtf8()).object();
}

QJsonObject PanelFixture::display(DisplayID id) const
{
    for (const auto display : status()[u"displays"].toArray()) {
        if (display[u"id"].toInteger() == id)
            return display.toObject();
    }
    return {};
}

QQuickView &PanelFixture::view(DisplayID id)
{
    for (QWindow *window : QGuiApplication::allWindows()) {
        const auto panel = desktop.panelWindows.adopted.find(window);
        if (panel != desktop.panelWindows.adopted.end() &&
            panel->second->frame().contains(notchOf(id)))
            return dynamic_cast<QQuickView &>(*window);
    }
    throw std::logic_error("no panel on that screen");
}

void PanelFixture::press(quint32 keysym, Qt::KeyboardModifiers modifiers, int key, quint32 scanCode)
{
    QKeyEvent event(QEvent::KeyPress, key, modifiers, scanCode, keysym, 0);
    QCoreApplication::sendEvent(&view(), &event);
}

void PanelFixture::showView()
{
    view().setGeometry(0, 0, int(window().frame().width), int(window().frame().height));
    view().show();
    QCoreApplication::processEvents();
}

} // namespace velmo
