// Opens the panel on a shelf of 1,000 items, on the display it is started on, searches key by key,
// selects and scrolls, and prints what each costs the main thread until its frame is there: rows of
// a Markdown table. The highest of a few rounds counts.

#include "VelmoCore/Foundation/SystemScheduler.h"
#include "VelmoSystem/Linux/LinuxPlatform.h"
#include "VelmoUI/App/Renderer.h"
#include "VelmoUI/App/ServiceWiring.h"
#include "VelmoUI/Modules/BuiltInModules.h"
#include "VelmoUI/Modules/Shelf/ShelfPageModel.h"
#include "VelmoUI/Notch/NotchCoordinator.h"

#include <QApplication>
#include <QEventLoop>
#include <QQuickItem>
#include <QQuickView>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <ctime>

namespace velmo {
namespace {

constexpr int count = 1000;
constexpr int rounds = 5;
/// What one step leaves behind, thumbnails above all, isn't counted in the next.
constexpr Seconds rest = 0.4s;

double processorMilliseconds()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

class Shelf {
public:
    Shelf()
        : m_platform(m_scheduler),
          m_services({m_folder.path(), m_folder.path(), m_folder.path()},
                     {DataProtectionStatus::Disabled{}}, m_platform.ports())
    {
        m_services.settings.update([](AppSettings &settings) {
            settings.animationsEnabled = false; // the page fades in by wish, not by need
            settings.hasCompletedOnboarding = true;
        });
        std::vector<QUrl> files;
        for (int i = 0; i < count; ++i) {
            QFile file(m_folder.filePath(QStringLiteral("Relatório de viagem %1.txt").arg(i)));
            if (!file.open(QIODevice::WriteOnly))
                qFatal("Can't write %s", qPrintable(file.fileName()));
            files.push_back(QUrl::fromLocalFile(file.fileName()));
        }
        m_services.shelf.addReferences(files);
        addBuiltInModules(m_services.modules);
        m_coordinator.emplace(m_services);
        ServiceWiring::start(m_services);
        m_coordinator->start();
        pause();
    }

    void print()
    {
        double first = 0;
        double later = 0;
        double key = 0;
        double everything = 0;
        double end = 0;
        const double panel = work([this] { m_coordinator->open(QStringLiteral("activity")); });
        m_coordinator->toggleFromHotKey();
        pause();
        for (int round = 0; round < rounds; ++round) {
            const double opening = work([this] { m_coordinator->open(QStringLiteral("shelf")); });
            (round == 0 ? first : later) = std::max(round == 0 ? first : later, opening);
            ShelfPageModel &page = this->page();
            for (const char *text : {"7", "77", "775", "77", "7", ""})
                key = std::max(key, work([&] { page.search(QString::fromLatin1(text)); }));
            everything =
                std::max(everything, work([&] { page.handleKey(Qt::Key_A, Qt::ControlModifier); }));
            end = std::max(end, work([&] { page.handleKey(Qt::Key_End, Qt::NoModifier); }));
            work([&] { page.handleKey(Qt::Key_Home, Qt::NoModifier); });
            m_coordinator->toggleFromHotKey();
            pause();
        }
        std::puts("| step, 1,000 items | work, ms |\n|---|---:|");
        std::printf("| the panel's first opening, on another module | %.1f |\n"
                    "| opening, first time | %.1f |\n| opening again | %.1f |\n"
                    "| a key of the search | %.1f |\n| selecting all | %.1f |\n"
                    "| going to the other end | %.1f |\n",
                    panel, first, later, key, everything, end);
    }

private:
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

    ShelfPageModel &page()
    {
        const QVariant content =
            dynamic_cast<QQuickView &>(window()).rootObject()->property("content");
        return dynamic_cast<ShelfPageModel &>(
            *content.value<QObject *>()->property("page").value<QObject *>());
    }

    /// Of the main thread, until the first frame that shows it.
    double work(const std::function<void()> &step)
    {
        QEventLoop loop;
        const auto frame =
            QObject::connect(&window(), &QQuickWindow::frameSwapped, &loop, &QEventLoop::quit);
        const double before = processorMilliseconds();
        step();
        loop.exec();
        const double spent = processorMilliseconds() - before;
        QObject::disconnect(frame);
        pause();
        return spent;
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
    velmo::Shelf().print();
    return 0;
}
