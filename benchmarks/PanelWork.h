#pragma once

#include "VelmoCore/Foundation/SystemScheduler.h"
#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoSystem/Linux/LinuxPlatform.h"
#include "VelmoUI/Composition/AppServices.h"
#include "VelmoUI/Composition/BuiltInModules.h"
#include "VelmoUI/Composition/Renderer.h"
#include "VelmoUI/Composition/ServiceWiring.h"
#include "VelmoUI/Modules/Frame/ModuleRegistry.h"
#include "VelmoUI/Notch/NotchCoordinator.h"
#include "VelmoUI/Notch/PanelServices.h"

#include <QApplication>
#include <QEventLoop>
#include <QQuickItem>
#include <QQuickView>
#include <QTemporaryDir>

#include <chrono>
#include <ctime>

namespace velmo {

/// A panel on the display it is started on, and what each step takes until its frame is there.
class PanelWork {
public:
    /// In milliseconds.
    struct Cost {
        double wall; ///< until the frame is shown
        double work; ///< of the main thread
    };

    PanelWork()
        : m_platform(m_scheduler),
          m_services({m_folder.path(), m_folder.path(), m_folder.path()},
                     {DataProtectionStatus::Disabled{}}, m_platform.ports())
    {
        m_services.settings->update([](AppSettings &settings) {
            settings.animationsEnabled = false; // the page fades in for its looks
            settings.hasCompletedOnboarding = true;
        });
        for (auto &module : makeBuiltInModules(m_services))
            m_services.modules->add(std::move(module));
    }

    AppServices &services() { return m_services; }
    QString path(const QString &name) const { return m_folder.filePath(name); }

    /// Once the services hold what the panel is to show. Gives Orvane the time to load ahead.
    void start()
    {
        m_coordinator.emplace(m_services.panels(), std::make_unique<PanelEngine>());
        ServiceWiring::start(m_services);
        m_coordinator->start();
        pause(4s); // what opens is loaded ahead from the second second on
    }

    Cost open(const QString &module, const QString &item = {})
    {
        return cost([&] { m_coordinator->open({.module = module, .item = item}); });
    }
    void close()
    {
        m_coordinator->toggleFromHotKey();
        pause();
    }
    double work(const std::function<void()> &step) { return cost(step).work; }
    Cost cost(const std::function<void()> &step)
    {
        QEventLoop loop;
        const auto frame =
            QObject::connect(&window(), &QQuickWindow::frameSwapped, &loop, &QEventLoop::quit);
        const auto start = std::chrono::steady_clock::now();
        const double before = processorMilliseconds();
        step();
        loop.exec();
        const std::chrono::duration<double, std::milli> wall =
            std::chrono::steady_clock::now() - start;
        const Cost cost{wall.count(), processorMilliseconds() - before};
        QObject::disconnect(frame);
        pause();
        return cost;
    }

    /// The model of the page that is open.
    template <typename Page>
    Page &page()
    {
        const auto *content = dynamic_cast<QQuickView &>(window())
                                  .rootObject()
                                  ->property("content")
                                  .value<QObject *>();
        return dynamic_cast<Page &>(*content->property("page").value<QObject *>());
    }
    QQuickWindow &window()
    {
        for (QWindow *window : QGuiApplication::allWindows()) {
            if (auto *view = qobject_cast<QQuickWindow *>(window))
                return *view;
        }
        qFatal("No panel shows");
    }

private:
    /// What one step leaves behind, thumbnails above all, isn't counted in the next.
    static constexpr Seconds rest = 0.4s;

    static double processorMilliseconds()
    {
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
    }
    void pause(Seconds time = rest)
    {
        QEventLoop loop;
        const ScheduledTask task = m_scheduler.after(time, [&] { loop.quit(); });
        loop.exec();
    }

    const QTemporaryDir m_folder;
    SystemScheduler m_scheduler;
    LinuxPlatform m_platform;
    AppServices m_services;
    std::optional<NotchCoordinator> m_coordinator;
};

} // namespace velmo
