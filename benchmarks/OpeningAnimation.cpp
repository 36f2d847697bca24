// Opens and closes the panel on the display it is started on, with a page full of rows, and prints
// how evenly it is drawn: two rows of a Markdown table. The argument is how often, 5 by default.

#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoCore/Foundation/SystemScheduler.h"
#include "VelmoSystem/Linux/LinuxPlatform.h"
#include "VelmoUI/Composition/AppServices.h"
#include "VelmoUI/Composition/Renderer.h"
#include "VelmoUI/Modules/Activity/ActivityModule.h"
#include "VelmoUI/Modules/Frame/ModuleRegistry.h"
#include "VelmoUI/Notch/NotchCoordinator.h"
#include "VelmoUI/Notch/PanelServices.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QQuickItem>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <optional>

namespace velmo {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

/// Rests between two movements, so that what one leaves behind isn't counted in the next.
constexpr Seconds rest = 0.5s;

struct Samples {
    std::vector<double> values;

    double percentile(double share) const
    {
        std::vector<double> sorted = values;
        std::ranges::sort(sorted);
        return sorted.empty() ? 0 : sorted[std::size_t(share * double(sorted.size() - 1))];
    }
};

/// Watches one window for a kind of movement.
class FrameClock {
public:
    explicit FrameClock(QQuickWindow &window)
    {
        const auto direct = Qt::DirectConnection;
        QObject::connect(
            &window, &QQuickWindow::afterAnimating, &window, [this] { m_began = Clock::now(); },
            direct);
        QObject::connect(
            &window, &QQuickWindow::frameSwapped, &window, [this] { swapped(); }, direct);
    }

    void start()
    {
        m_isCounting = true;
        m_last.reset();
    }
    void stop() { m_isCounting = false; }

    void print(const char *movement, int runs) const
    {
        double total = 0;
        for (const double interval : m_intervals.values)
            total += interval;
        std::printf("| %s | %.0f | %.1f | %.1f | %.1f | %.1f | %.1f |\n", movement,
                    double(m_intervals.values.size() + std::size_t(runs)) / runs,
                    total > 0 ? 1000 * double(m_intervals.values.size()) / total : 0,
                    m_intervals.percentile(0.5), m_intervals.percentile(0.95),
                    m_intervals.percentile(1), m_work.percentile(0.95));
    }

private:
    void swapped()
    {
        if (!m_isCounting)
            return;
        const auto now = Clock::now();
        if (m_last)
            m_intervals.values.push_back(Milliseconds(now - *m_last).count());
        m_last = now;
        m_work.values.push_back(Milliseconds(now - m_began).count());
    }

    bool m_isCounting = false;
    Clock::time_point m_began;
    std::optional<Clock::time_point> m_last;
    Samples m_intervals;
    Samples m_work;
};

void fill(AppServices &services)
{
    const Date now = services.platform.scheduler.now();
    services.activity->upsert({.id = QStringLiteral("job"),
                               .symbol = QStringLiteral("doc.zipper"),
                               .title = QStringLiteral("Compactando 12 arquivos"),
                               .progress = 0.4,
                               .isCancellable = true});
    for (int i = 0; i < 20; ++i) {
        services.activity->post(
            ActivityEvent::make(now, QStringLiteral("checkmark.circle.fill"),
                                QStringLiteral("Conversão concluída"), FeedbackStyle::success,
                                QStringLiteral("files"), QStringLiteral("relatório.pdf"),
                                {QUrl(QStringLiteral("file:///relatório.pdf"))}),
            ActivityCenter::Presentation::historyOnly);
    }
}

QQuickView &panelView()
{
    for (QWindow *window : QGuiApplication::allWindows()) {
        if (auto *view = qobject_cast<QQuickView *>(window))
            return *view;
    }
    qFatal("No panel shows");
}

void measure(int runs)
{
    const QTemporaryDir folder;
    SystemScheduler scheduler;
    LinuxPlatform platform(scheduler);
    AppServices services({folder.path(), folder.path(), folder.path()},
                         {DataProtectionStatus::Disabled{}}, platform.ports());
    services.modules->add(std::make_unique<ActivityModule>(
        *services.activity, services.platform.fileViewer, services.platform.scheduler));
    fill(services);
    NotchCoordinator coordinator(services.panels(), std::make_unique<PanelEngine>());
    coordinator.start();

    QQuickView &view = panelView();
    ShapeAnimator *shape = view.rootObject()->property("content").value<NotchContent *>()->shape();
    FrameClock opening(view);
    FrameClock closing(view);
    QEventLoop loop;
    const auto pause = [&](Seconds time) {
        const ScheduledTask task = scheduler.after(time, [&] { loop.quit(); });
        loop.exec();
    };
    const auto play = [&](FrameClock &clock) {
        clock.start();
        coordinator.toggleFromHotKey();
        while (shape->state() == QAbstractAnimation::Running)
            pause(0.05s);
        clock.stop();
        pause(rest);
    };
    pause(rest);
    for (int run = 0; run < runs; ++run) {
        play(opening);
        play(closing);
    }
    std::puts("| movement | frames | per second | interval p50, ms | p95 | max | work p95, ms |");
    std::puts("|---|---:|---:|---:|---:|---:|---:|");
    opening.print("opening", runs);
    closing.print("closing", runs);
}

} // namespace
} // namespace velmo

int main(int argc, char **argv)
{
    velmo::Renderer::choose();
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    velmo::measure(arguments.size() > 1 ? std::max(1, arguments[1].toInt()) : 5);
    return 0;
}
