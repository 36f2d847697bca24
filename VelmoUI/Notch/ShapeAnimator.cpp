#include "VelmoUI/Notch/ShapeAnimator.h"

#include "VelmoCore/Foundation/Overloaded.h"

#include <algorithm>

namespace velmo {

ShapeAnimator::ShapeAnimator(QObject *parent) : QAbstractAnimation(parent)
{
}

void ShapeAnimator::moveTo(const NotchShapeSpec &target, const NotchMotion &motion)
{
    if (target == m_target)
        return;
    const bool sameNumbers = numbers(target) == numbers(m_target);
    m_target = target;
    m_motion = motion;
    Q_EMIT targetChanged();
    if (sameNumbers && state() == Running)
        return;
    stop();
    if (std::holds_alternative<NotchMotion::None>(motion.value)) {
        arrive();
        return;
    }
    m_from = m_channels;
    start();
}

NotchShapeSpec ShapeAnimator::current() const
{
    return {
        {coreWidth(), height()}, topRadius(), bottomRadius(), isShapeVisible(), horizontalOffset()};
}

void ShapeAnimator::updateCurrentTime(int milliseconds)
{
    const Seconds elapsed = std::chrono::milliseconds(milliseconds);
    const Numbers to = numbers(m_target);
    bool settled = true;
    for (std::size_t i = 0; i < channelCount; ++i) {
        m_channels[i] = std::visit(
            overloaded{
                [&](const NotchMotion::None &) {
                    return NotchMotions::Sample{to[i], 0};
                },
                [&](const NotchMotion::Spring &spring) {
                    return NotchMotions::sample(spring, m_from[i].position, m_from[i].velocity,
                                                to[i], elapsed);
                },
                [&](const NotchMotion::Ease &ease) {
                    return NotchMotions::sample(ease, m_from[i].position, to[i], elapsed);
                },
            },
            m_motion.value);
        settled = settled && NotchMotions::isSettled(m_channels[i], to[i]);
    }
    if (settled && milliseconds > 0) {
        stop();
        arrive();
        return;
    }
    Q_EMIT frameChanged();
}

ShapeAnimator::Numbers ShapeAnimator::numbers(const NotchShapeSpec &spec)
{
    return {spec.coreSize.width, spec.coreSize.height, spec.topRadius, spec.bottomRadius,
            spec.horizontalOffset};
}

void ShapeAnimator::arrive()
{
    std::ranges::transform(numbers(m_target), m_channels.begin(), [](double position) {
        return NotchMotions::Sample{position, 0};
    });
    Q_EMIT frameChanged();
}

} // namespace velmo
