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
    PanelFixture();
    ~PanelFixture() override;

    void start(std::vector<ScreenDescriptor> screens = {FakeDesktop::screen(1)})
    {
        change([](AppSettings &next) { next.displayMode = {DisplayMode::All{}}; });
        desktop.displays.descriptors = std::move(screens);
        coordinator.start();
    }
    void wait(Seconds time) { desktop.scheduler.advance(time); }

    QJsonObject status() const;
    QJsonObject display(DisplayID id = 1) const;
    /// [x, y, width, height] in pixels
    QJsonArray shape() const { return display()[u"shape"].toArray(); }
    QString shown(DisplayID id = 1) const { return display(id)[u"presentation"].toString(); }
    QString module() const { return display()[u"module"].toString(); }
    bool isVisible(DisplayID id = 1) const { return display(id)[u"visible"].toBool(); }

    QQuickView &view(DisplayID id = 1);
    FakePanelWindow &window(DisplayID id = 1)
    {
        return *desktop.panelWindows.adopted.at(&view(id));
    }
    void press(quint32 keysym, Qt::KeyboardModifiers modifiers = {}, int key = Qt::Key_unknown,
               quint32 scanCode = 0);
    /// Shows the view where the tests' windows are.
    void showView();
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

    NotchCoordinator coordinator;
};

} // namespace velmo
