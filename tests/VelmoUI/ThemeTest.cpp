#include "tests/support/Printers.h"

#include <QColor>
#include <QQmlComponent>
#include <QQmlEngine>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

namespace velmo {
namespace {

double brightness(const QColor &color)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

/// A colour as it is seen on an opaque one.
QColor over(const QColor &color, const QColor &ground)
{
    const float share = color.alphaF();
    return QColor::fromRgbF(color.redF() * share + ground.redF() * (1 - share),
                            color.greenF() * share + ground.greenF() * (1 - share),
                            color.blueF() * share + ground.blueF() * (1 - share));
}

double contrast(const QColor &color, const QColor &ground)
{
    const double one = brightness(over(color, ground));
    const double other = brightness(ground);
    return (std::max(one, other) + 0.05) / (std::min(one, other) + 0.05);
}

TEST(Theme, CanBeReadAndSeenOnEverySurface)
{
    QQmlEngine engine;
    engine.addImportPath(u"qrc:/qt/qml"_qs);
    QQmlComponent component(&engine);
    component.setData(
        "import QtQml; import Velmo.Design; QtObject { property QtObject theme: Theme }", {});
    const std::unique_ptr<QObject> holder(component.create());
    ASSERT_TRUE(holder) << component.errorString().toStdString();
    auto *theme = holder->property("theme").value<QObject *>();
    const auto color = [&](const QString &name) {
        return theme->property(name.toLatin1()).value<QColor>();
    };
    for (const bool isLight : {false, true}) {
        theme->setProperty("isLight", isLight);
        const QColor surface = color(u"surface"_qs);
        const auto expect = [&](const QString &name, const QString &ground, double least) {
            EXPECT_GE(contrast(color(name), over(color(ground), surface)), least)
                << name.toStdString() << " on " << ground.toStdString()
                << (isLight ? ", light" : ", dark");
        };
        const QStringList plain{u"window"_qs, u"surface"_qs, u"surfaceHover"_qs, u"field"_qs,
                                u"raised"_qs};
        for (const QString &ground : plain) {
            for (const char16_t *name :
                 {u"text", u"secondaryText", u"tertiaryText", u"success", u"error", u"warning"})
                expect(QString::fromUtf16(name), ground, 4.5);
            for (const QString &accent :
                 theme->property("accents").value<QJSValue>().toVariant().toMap().keys()) {
                theme->setProperty("accentName", accent);
                expect(u"accent"_qs, ground, 4.5);
            }
            expect(u"off"_qs, ground, 3);
        }
        for (const QString &ground : {u"surfacePressed"_qs, u"surfaceSelected"_qs}) {
            for (const QString &name : {u"text"_qs, u"secondaryText"_qs})
                expect(name, ground, 4.5);
        }
        expect(u"knob"_qs, u"off"_qs, 3);
    }
}

} // namespace
} // namespace velmo
