#include "VelmoSystem/Linux/X11/X11Displays.h"

#include "VelmoSystem/Linux/X11/X11Connection.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <cmath>
#include <limits>

namespace velmo {

namespace {

/// FNV-1a (32 bits): the same id for the same output in every run.
DisplayID hashOf(const QString &name)
{
    DisplayID hash = 2'166'136'261U;
    for (const char byte : name.toUtf8())
        hash = (hash ^ static_cast<unsigned char>(byte)) * 16'777'619U;
    return hash;
}

bool isBuiltIn(const QString &name)
{
    return name.startsWith(u"eDP") || name.startsWith(u"LVDS") || name.startsWith(u"DSI");
}

Rect flipped(const QRect &logical)
{
    return {double(logical.x()), -double(logical.y() + logical.height()), double(logical.width()),
            double(logical.height())};
}

QRect nativeGeometry(const QScreen &screen)
{
    const QRect logical = screen.geometry();
    const double scale = screen.devicePixelRatio();
    return {logical.topLeft(), QSize(int(std::lround(logical.width() * scale)),
                                     int(std::lround(logical.height() * scale)))};
}

/// Without its placeholder, which Qt shows while there is no screen.
QList<QScreen *> realScreens()
{
    auto screens = QGuiApplication::screens();
    screens.removeIf([](const QScreen *screen) { return screen->name().isEmpty(); });
    return screens;
}

int distance(const QRect &rect, const QPoint &point)
{
    const int x = std::max({rect.left() - point.x(), 0, point.x() - rect.right()});
    const int y = std::max({rect.top() - point.y(), 0, point.y() - rect.bottom()});
    return x + y;
}

Rect converted(const QRect &pixels, const QPoint &chooser)
{
    QRect native;
    double scale = 1;
    int nearest = std::numeric_limits<int>::max();
    for (const QScreen *screen : realScreens()) {
        const QRect geometry = nativeGeometry(*screen);
        if (const int away = distance(geometry, chooser); away < nearest) {
            nearest = away;
            native = geometry;
            scale = screen->devicePixelRatio();
        }
    }
    const double below = pixels.y() + pixels.height() - native.y();
    return {native.x() + (pixels.x() - native.x()) / scale, -native.y() - below / scale,
            pixels.width() / scale, pixels.height() / scale};
}

} // namespace

X11Displays::X11Displays(X11Connection &connection, ScreenCutouts cutouts)
    : m_connection(connection), m_cutouts(std::move(cutouts)), m_announced(allDescriptors())
{
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [this](const QScreen *screen) {
        watch(screen);
        checkLater();
    });
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &X11Displays::checkLater);
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, &X11Displays::checkLater);
    for (const QScreen *screen : QGuiApplication::screens())
        watch(screen);
}

std::vector<ScreenDescriptor> X11Displays::allDescriptors() const
{
    std::vector<ScreenDescriptor> descriptors;
    const auto isTaken = [&](DisplayID id) {
        return std::ranges::find(descriptors, id, &ScreenDescriptor::displayID) !=
               descriptors.end();
    };
    for (const QScreen *screen : realScreens()) {
        ScreenDescriptor descriptor{.displayID = hashOf(screen->name()),
                                    .name = screen->name(),
                                    .frame = flipped(screen->geometry()),
                                    .visibleFrame = flipped(screen->availableGeometry()),
                                    .isBuiltIn = isBuiltIn(screen->name()),
                                    .isPrimary = screen == QGuiApplication::primaryScreen()};
        while (isTaken(descriptor.displayID))
            ++descriptor.displayID;
        const auto cutout =
            m_cutouts.find(descriptor.name, descriptor.isBuiltIn, nativeGeometry(*screen).size(),
                           screen->devicePixelRatio());
        if (cutout) {
            descriptor.safeAreaTop = cutout->top;
            descriptor.auxiliaryTopLeftWidth = cutout->left;
            descriptor.auxiliaryTopRightWidth = cutout->right;
        }
        descriptors.push_back(std::move(descriptor));
    }
    return descriptors;
}

std::optional<DisplayID> X11Displays::screenUnderMouse() const
{
    const auto pixel = m_connection.pointerPosition();
    if (!pixel)
        return std::nullopt;
    const Point point = toPoints(*pixel);
    for (const ScreenDescriptor &screen : allDescriptors())
        if (screen.frame.contains(point))
            return screen.displayID;
    return std::nullopt;
}

std::array<int, 4> X11Displays::nativeFrame(DisplayID id, const Rect &frame) const
{
    double scale = 1;
    Point corner{0, 0};
    const auto descriptors = allDescriptors();
    const auto screens = realScreens();
    for (std::size_t index = 0; index < descriptors.size(); ++index) {
        if (descriptors[index].displayID != id)
            continue;
        scale = screens[qsizetype(index)]->devicePixelRatio();
        corner = {descriptors[index].frame.minX(), descriptors[index].frame.maxY()};
    }
    const auto pixels = [scale](double points) { return int(std::lround(points * scale)); };
    return {int(corner.x) + pixels(frame.minX() - corner.x),
            -int(corner.y) + pixels(corner.y - frame.maxY()), pixels(frame.width),
            pixels(frame.height)};
}

Point X11Displays::toPoints(const QPoint &pixel) const
{
    const Rect rect = converted(QRect(pixel, QSize(1, 1)), pixel);
    return {rect.x, rect.y};
}

Rect X11Displays::toPoints(const QRect &pixels) const
{
    return converted(pixels, pixels.center());
}

void X11Displays::watch(const QScreen *screen)
{
    connect(screen, &QScreen::geometryChanged, this, &X11Displays::checkLater);
    connect(screen, &QScreen::availableGeometryChanged, this, &X11Displays::checkLater);
    connect(screen, &QScreen::logicalDotsPerInchChanged, this, &X11Displays::checkLater);
}

// Qt announces one change of the layout in many steps, some with screens that are about to go.
void X11Displays::checkLater()
{
    if (std::exchange(m_isCheckPending, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_isCheckPending = false;
            if (auto now = allDescriptors(); now != m_announced) {
                m_announced = std::move(now);
                Q_EMIT changed();
            }
        },
        Qt::QueuedConnection);
}

} // namespace velmo
