#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace velmo {

class AppServices;

/// The System page of one panel.
class SystemPageModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made in C++")

public:
    explicit SystemPageModel(AppServices &services);

private:
    AppServices &m_services;
};

} // namespace velmo
