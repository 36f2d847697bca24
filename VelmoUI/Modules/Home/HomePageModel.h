#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace velmo {

class AppServices;

/// Home as one panel shows it.
class HomePageModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made in C++")

public:
    explicit HomePageModel(AppServices &services);

private:
    AppServices &m_services;
};

} // namespace velmo
