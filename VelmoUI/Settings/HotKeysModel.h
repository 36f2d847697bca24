#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace velmo {

class AppServices;

/// The global shortcuts and the field that records one.
class HotKeysModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made in C++")

public:
    explicit HotKeysModel(AppServices &services);

private:
    AppServices &m_services;
};

} // namespace velmo
