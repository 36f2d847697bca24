#include <QGuiApplication>
#include <QQmlApplicationEngine>

/// The least a Qt Quick program can be: what Orvane pays before it does anything.
int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    QQmlApplicationEngine engine;
    engine.loadData("import QtQuick\n"
                    "Window { visible: true; width: 1160; height: 200; color: 'black' }");
    return engine.rootObjects().isEmpty() ? 1 : QGuiApplication::exec();
}
