#include "VelmoUI/Design/IconProvider.h"

#include "tests/support/TemporaryFolder.h"

#include <QGuiApplication>
#include <QIcon>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>

#include <gtest/gtest.h>

namespace velmo {

namespace {

struct SeenProvider : IconProvider {
    QPixmap requestPixmap(const QString &id, QSize *size, const QSize &requestedSize) override
    {
        QPixmap icon = IconProvider::requestPixmap(id, size, requestedSize);
        seen = icon.toImage();
        return icon;
    }

    QImage seen;
};

} // namespace

/// Each icon has a colour of its own.
TEST(IconProvider, ShowsIconsOfTheThemeAndOfFiles)
{
    const TemporaryFolder folder;
    const auto draw = [&](const QString &name, QSize size, const QColor &color) {
        QImage image(size, QImage::Format_ARGB32);
        image.fill(color);
        folder.write(name, {});
        EXPECT_TRUE(image.save(folder.path(name), "png"));
    };
    folder.write("test/index.theme", "[Icon Theme]\nName=Test\nDirectories=16,any\n"
                                     "[16]\nSize=16\n[any]\nSize=64\nType=Scalable\n"
                                     "MinSize=17\nMaxSize=512\n");
    draw("test/16/org.example.png", {16, 16}, Qt::red);
    folder.write("test/any/drawn.svg", R"(<svg xmlns="http://www.w3.org/2000/svg" width="64"
        height="64"><rect width="64" height="64" fill="#0000ff"/></svg>)");
    draw("test/16/application-x-executable.png", {16, 16}, Qt::gray);
    draw("wide #1 50%.png", {20, 10}, Qt::green);
    draw("window.png", {64, 64}, Qt::cyan);
    QGuiApplication::setWindowIcon(QIcon(folder.path("window.png")));
    QIcon::setThemeSearchPaths({folder.path()});
    QIcon::setThemeName("test");

    QQmlEngine engine;
    auto *provider = new SeenProvider; // the engine's
    engine.addImageProvider("icon", provider);
    QQmlComponent component(&engine);
    component.setData("import QtQuick; Image { sourceSize: Qt.size(64, 64) }", {});
    const std::unique_ptr<QObject> image(component.create());
    struct Case {
        QString name;
        QColor middle;
        int alphaAtTop = 255;
    };
    const Case cases[] = {{"org.example", Qt::red},
                          {"org.example.png", Qt::red},
                          {"drawn", Qt::blue},
                          {folder.path("wide #1 50%.png"), Qt::green, 0},
                          {folder.path("none.png"), Qt::gray},
                          {"app.orvane.Orvane", Qt::cyan},
                          {"none", Qt::gray}};
    for (const auto &[name, middle, alphaAtTop] : cases) {
        image->setProperty("source", QUrl("image://icon/" + name));
        const QImage &seen = provider->seen;
        EXPECT_EQ(seen.size(), QSize(64, 64));
        EXPECT_EQ(image->property("implicitHeight"), 64);
        EXPECT_EQ(seen.pixelColor(32, 32), middle) << qPrintable(name);
        EXPECT_EQ(seen.pixelColor(32, 2).alpha(), alphaAtTop) << qPrintable(name);
    }
    EXPECT_EQ(provider->requestPixmap("drawn", nullptr, {}).size(), QSize(48, 48));
}

} // namespace velmo
