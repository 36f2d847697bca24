#pragma once

#include <QQmlComponent>
#include <QQmlEngine>

namespace velmo {

/// The QML engine of all panels. A panel's view starts to load with it, on the engine's own thread.
class PanelEngine : public QQmlEngine {
public:
    PanelEngine();

    static QUrl viewUrl();

private:
    QQmlComponent m_view;
};

} // namespace velmo
