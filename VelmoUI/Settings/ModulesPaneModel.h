#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace velmo {

class AppServices;

/// Modules, cards and favourites, in order.
class ModulesPaneModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made in C++")

public:
    explicit ModulesPaneModel(AppServices &services);

private:
    AppServices &m_services;
};

} // namespace velmo
