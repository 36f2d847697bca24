#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace velmo {

/// The symbols' glyphs in the icon face (Material Icons). Records and modules know symbols by name.
class Symbols : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// The text that the icon face draws as the symbol; a plain dot for an unknown name.
    Q_INVOKABLE static QString glyph(const QString &name);
};

} // namespace velmo
