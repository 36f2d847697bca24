#include "VelmoUI/Composition/QmlModules.h"

#include <QApplication>
#include <QQuickWindow>

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QQuickWindow::setDefaultAlphaBuffer(true);
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QApplication application(argc, argv);
    velmo::registerQmlModules();
    return RUN_ALL_TESTS();
}
