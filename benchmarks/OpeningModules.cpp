// Opens the panel on each module, on the display it is started on, and prints when the first frame
// that shows it is there and what that costs the main thread: rows of a Markdown table.

#include "VelmoCore/Foundation/SystemScheduler.h"
#include "VelmoSystem/Linux/LinuxPlatform.h"
#include "VelmoUI/App/Renderer.h"
#include "VelmoUI/App/ServiceWiring.h"
#include "VelmoUI/Modules/BuiltInModules.h"
#include "VelmoUI/Notch/NotchCoordinator.h"

#include <QApplication>
#include <QEventLoop>
#include <QTemporaryDir>

#include <chrono>
#include <cstdio>
#include <ctime>

namespace velmo {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

/// What an opening leaves behind isn't counted in the next.
constexpr Seconds rest = 0.5s;

Milliseconds processorTime()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return Seconds(double(time.tv_sec)) + std::chrono::nanoseconds(time.tv_nsec);
}

class Openings {
public:
    Openings()
        : m_platform(m_scheduler),
          m_services({m_folder.path(), m_folder.path(), m_folder.path()},
                     {DataProtectionStatus::Disabled{}}, m_platform.ports())
    {
        m_services.settings.update([](AppSettings &settings) {
            settings.animationsEnabled = false; // the page fades in by wish, not by need
            settings.hasCompletedOnboarding = true;
            settings.hiddenHomeCards = {};
        });
        addBuiltInModules(m_services.modules);
        m_coordinator.emplace(m_services);
        ServiceWiring::start(m_services);
        m_coordinator->start();
        pause();
    }

    void print()
    {
        std::puts("| module | first time, ms | work, ms | second time, ms | work, ms |");
        std::puts("|---|---:|---:|---:|---:|");
        for (const NotchModule *module : m_services.modules.ordered(ModuleSettings())) {
            const Cost first = open(module->id());
            const Cost second = open(module->id());
            std::printf("| %s | %.1f | %.1f | %.1f | %.1f |\n", qPrintable(module->title()),
                        first.wall.count(), first.work.count(), second.wall.count(),
                        second.work.count());
        }
    }

private:
    struct Cost {
        Milliseconds wall;
        Milliseconds work;
    };

    void pause()
    {
        QEventLoop loop;
        const ScheduledTask task = m_scheduler.after(rest, [&] { loop.quit(); });
        loop.exec();
    }

    QQuickWindow &window()
    {
        for (QWindow *window : QGuiApplication::allWindows()) {
            if (auto *view = qobject_cast<QQuickWindow *>(window))
                return *view;
        }
        qFatal("No panel shows");
    }

    Cost open(const QString &moduleID)
    {
        QEventLoop loop;
        const auto frame =
            QObject::connect(&window(), &QQuickWindow::frameSwapped, &loop, &QEventLoop::quit);
        const auto start = Clock::now();
        const Milliseconds work = processorTime();
        m_coordinator->open(moduleID);
        loop.exec();
        const Cost cost{Clock::now() - start, processorTime() - work};
        QObject::disconnect(frame);
        pause();
        m_coordinator->toggleFromHotKey();
        pause();
        return cost;
    }

    const QTemporaryDir m_folder;
    SystemScheduler m_scheduler;
    LinuxPlatform m_platform;
    AppServices m_services;
    std::optional<NotchCoordinator> m_coordinator;
};

} // namespace
} // namespace velmo

int main(int argc, char **argv)
{
    velmo::Renderer::choose();
    const QApplication application(argc, argv);
    velmo::Openings().print();
    return 0;
}
