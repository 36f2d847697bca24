#include "VelmoSystem/Linux/ScreenCutouts.h"

#include "VelmoCore/Foundation/Log.h"

#include <QFile>

#include <array>
#include <string_view>

namespace velmo {

namespace {

/// A cut-out in pixels of the panel in its own orientation.
struct Device {
    std::u16string_view model;
    QSize native;
    ScreenCutout pixels;
};

constexpr std::array devices{
    Device{u"OnePlus 6", QSize(1080, 2280), {80, 357, 357}},
    Device{u"OnePlus 6T", QSize(1080, 2340), {79, 355, 356}},
};

struct NamedCutout {
    QString screen;
    ScreenCutout cutout;
};

std::optional<NamedCutout> parsed(const QString &part)
{
    const qsizetype colon = part.lastIndexOf(u':'); // a screen's name may hold one
    const QStringList texts = part.mid(colon + 1).split(u',');
    const QString screen = part.left(colon).trimmed();
    if (colon < 1 || screen.isEmpty() || texts.size() != 3)
        return std::nullopt;
    std::array<double, 3> lengths{};
    for (std::size_t index = 0; index < lengths.size(); ++index) {
        bool isNumber = false;
        lengths[index] = texts[qsizetype(index)].toDouble(&isNumber);
        if (!isNumber || !qIsFinite(lengths[index]) || lengths[index] < 0)
            return std::nullopt;
    }
    return NamedCutout{screen, {lengths[0], lengths[1], lengths[2]}};
}

QString modelOfThisMachine()
{
    for (const char *path :
         {"/sys/firmware/devicetree/base/model", "/sys/class/dmi/id/product_name"}) {
        QFile file(QString::fromLatin1(path));
        if (file.open(QIODevice::ReadOnly)) // a device tree's text ends with a zero byte
            return QString::fromUtf8(file.readAll().replace('\0', "")).trimmed();
    }
    return {};
}

} // namespace

ScreenCutouts::ScreenCutouts(const QString &override, const QString &deviceModel)
    : m_deviceModel(deviceModel)
{
    for (const QString &part : override.split(u';', Qt::SkipEmptyParts)) {
        if (const auto named = parsed(part))
            m_overrides.insert_or_assign(named->screen, named->cutout);
        else
            qCWarning(Log::app, "ORVANE_SCREEN_CUTOUT: trecho ignorado: %s", qUtf8Printable(part));
    }
}

ScreenCutouts ScreenCutouts::ofThisMachine()
{
    return {qEnvironmentVariable("ORVANE_SCREEN_CUTOUT"), modelOfThisMachine()};
}

std::optional<ScreenCutout> ScreenCutouts::find(const QString &screen, bool isBuiltIn, QSize native,
                                                double scale) const
{
    if (const auto found = m_overrides.find(screen); found != m_overrides.end())
        return found->second;
    if (!isBuiltIn)
        return std::nullopt;
    for (const Device &device : devices)
        if (QStringView(device.model) == m_deviceModel && device.native == native)
            return ScreenCutout{device.pixels.top / scale, device.pixels.left / scale,
                                device.pixels.right / scale};
    return std::nullopt;
}

} // namespace velmo
