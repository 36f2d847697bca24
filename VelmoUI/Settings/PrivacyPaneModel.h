#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace velmo {

class AppServices;

/// Permissions, protection of the data and the history.
class PrivacyPaneModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made in C++")

public:
    explicit PrivacyPaneModel(AppServices &services);

private:
    AppServices &m_services;
};

} // namespace velmo
