#pragma once

#include "VelmoCore/Notch/NotchLayout.h"
#include "VelmoCore/Notch/NotchMotion.h"

#include <QAbstractAnimation>
#include <QtQml/qqmlregistration.h>

#include <array>

namespace velmo {

/// Moves a panel's shape from one set of numbers to the next, frame by frame with the view's own
/// animation clock. A shape that is redirected on its way keeps its speed.
class ShapeAnimator : public QAbstractAnimation {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to a panel's model")
    Q_PROPERTY(qreal coreWidth READ coreWidth NOTIFY frameChanged)
    Q_PROPERTY(qreal height READ height NOTIFY frameChanged)
    Q_PROPERTY(qreal topRadius READ topRadius NOTIFY frameChanged)
    Q_PROPERTY(qreal bottomRadius READ bottomRadius NOTIFY frameChanged)
    Q_PROPERTY(qreal horizontalOffset READ horizontalOffset NOTIFY frameChanged)
    /// Where it is going: content lays itself out for the end of the way.
    Q_PROPERTY(qreal targetCoreWidth READ targetCoreWidth NOTIFY targetChanged)
    Q_PROPERTY(qreal targetHeight READ targetHeight NOTIFY targetChanged)
    Q_PROPERTY(bool shapeVisible READ isShapeVisible NOTIFY frameChanged)

public:
    explicit ShapeAnimator(QObject *parent = nullptr);

    /// Sets out for `target`; arrives at once with `NotchMotion::None`.
    void moveTo(const NotchShapeSpec &target, const NotchMotion &motion);

    /// The shape as it is in this frame.
    NotchShapeSpec current() const;
    const NotchShapeSpec &target() const { return m_target; }
    qreal targetCoreWidth() const { return m_target.coreSize.width; }
    qreal targetHeight() const { return m_target.height(); }

    qreal coreWidth() const { return m_channels[0].position; }
    qreal height() const { return m_channels[1].position; }
    qreal topRadius() const { return m_channels[2].position; }
    qreal bottomRadius() const { return m_channels[3].position; }
    qreal horizontalOffset() const { return m_channels[4].position; }
    /// A shape that goes invisible stays to be seen until it has arrived.
    bool isShapeVisible() const { return m_target.isVisible || state() == Running; }

    int duration() const override { return -1; }

Q_SIGNALS:
    void frameChanged();
    /// It sets out for other numbers.
    void targetChanged();

protected:
    void updateCurrentTime(int milliseconds) override;

private:
    static constexpr std::size_t channelCount = 5;
    using Numbers = std::array<double, channelCount>;

    static Numbers numbers(const NotchShapeSpec &spec);
    void arrive();

    NotchShapeSpec m_target;
    NotchMotion m_motion;
    std::array<NotchMotions::Sample, channelCount> m_from{};
    std::array<NotchMotions::Sample, channelCount> m_channels{};
};

} // namespace velmo
