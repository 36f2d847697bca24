#pragma once

#include "VelmoCore/Activity/ActivityEvent.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace velmo {

/// `FeedbackStyle` for QML, which reads only names that begin with a capital.
class Feedback : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Only names its styles")

public:
    enum Style { Success, Error, Info };
    Q_ENUM(Style)

    static Style of(FeedbackStyle style) { return Style(int(style)); }
};

} // namespace velmo
