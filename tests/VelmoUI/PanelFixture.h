#pragma once

#include "VelmoUI/Notch/NotchCoordinator.h"

#include "tests/VelmoUI/FakeModule.h"
#include "tests/VelmoUI/ServicesFixture.h"

#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QKeyEvent>

namespace velmo {

inline constexpr Point outside{100, -600};

inline Point notchOf(DisplayID screen)
{
    return {FakeDesktop::screen(screen).frame.midX(), -4};
}

/// A coordinator on a desktop of fakes, with real views, and three modules.
class PanelFixture : public ServicesFixture {
protected:
    PanelFixture()
    {
        change([](AppSettings &next) { next.animationsEnabled = false; });
        for (const char16_t *id : {u"um", u"dois", u"três"})
            FakeModule::addTo(services.modules, QString::fromUtf16(id));
        desktop.movePointer(outside);
    }

    void start(std::vector<ScreenDescriptor> screens = {FakeDesktop::screen(1)})
    {
        change([](AppSettings &next) { next.displayMode = {DisplayMode::All{}}; });
        desktop.displays.descriptors = std::move(screens);
        coordinator.start();
    }
    void wait(Seconds time) { desktop.scheduler.advance(time); }

    QJsonObject status() const
    {
        return QJsonDocument::fromJson(coordinator.statusText().toUtf8()).object();
    }
    QJsonObject display(DisplayID id = 1) const
    {
        for (const auto display : status()[u"displays"].toArray()) {
            if (display[u"id"].toInteger() == id)
                return display.toObject();
        }
        return {};
    }
    /// [x, y, width, height] in pixels
    QJsonArray shape() const { return display()[u"shape"].toArray(); }
    QString shown(DisplayID id = 1) const { return display(id)[u"presentation"].toString(); }
    QString module() const { return display()[u"module"].toString(); }
    bool isVisible(DisplayID id = 1) const { return display(id)[u"visible"].toBool(); }

    QQuickView &view(DisplayID id = 1)
    {
        for (QWindow *window : QGuiApplication::allWindows()) {
            const auto panel = desktop.panelWindows.adopted.find(window);
            if (panel != desktop.panelWindows.adopted.end() &&
                panel->second->frame().contains(notchOf(id)))
                return dynamic_cast<QQuickView &>(*window);
        }
        throw std::logic_error("no panel on that screen");
    }
    FakePanelWindow &window(DisplayID id = 1)
    {
        return *desktop.panelWindows.adopted.at(&view(id));
    }
    void press(quint32 keysym, Qt::KeyboardModifiers modifiers = {}, int key = Qt::Key_unknown,
               quint32 scanCode = 0)
    {
        QKeyEvent event(QEvent::KeyPress, key, modifiers, scanCode, keysym, 0);
        QCoreApplication::sendEvent(&view(), &event);
    }
    /// Shows the view where the tests' windows are.
    void showView()
    {
        view().setGeometry(0, 0, int(window().frame().width), int(window().frame().height));
        view().show();
        QCoreApplication::processEvents();
    }
    void beginDrag()
    {
        desktop.pointer.press(outside);
        desktop.dragPasteboard.begin({.hasFiles = true});
    }
    /// Opens the panel by a pointer that rests.
    void hover()
    {
        desktop.movePointer(notchOf(1));
        wait(0.12s);
    }

    NotchCoordinator coordinator{services.panels()};
};

} // namespace velmo
