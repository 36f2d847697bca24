#pragma once

#include "VelmoCore/Foundation/PlatformNames.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace velmo {

/// `PlatformNames` for QML.
class PlatformWords : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString computer READ computer CONSTANT)
    Q_PROPERTY(QString showInFolder READ showInFolder CONSTANT)
    Q_PROPERTY(QString systemSettings READ systemSettings CONSTANT)

public:
    QString computer() const { return QString::fromUtf16(PlatformNames::computer); }
    QString showInFolder() const { return QString::fromUtf16(PlatformNames::showInFolder); }
    QString systemSettings() const { return QString::fromUtf16(PlatformNames::systemSettings); }
};

} // namespace velmo
