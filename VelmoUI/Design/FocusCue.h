#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace velmo {

/// Whether the user goes about the windows by key just now: only then is it shown where the
/// keyboard is. A press of the pointer ends that; what is typed into a text doesn't begin it. One
/// an engine.
class FocusCue : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool byKeys READ byKeys WRITE setByKeys NOTIFY changed)

public:
    FocusCue();

    bool byKeys() const { return m_byKeys; }
    void setByKeys(bool byKeys);

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void changed();

private:
    bool m_byKeys = false;
};

} // namespace velmo
