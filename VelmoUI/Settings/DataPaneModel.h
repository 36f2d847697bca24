#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace velmo {

class AppServices;

/// Sizes on disk, export, import and reset.
class DataPaneModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made in C++")

public:
    explicit DataPaneModel(AppServices &services);

private:
    AppServices &m_services;
};

} // namespace velmo
