// Drops 3,000 and 10,000 files onto the shelf, from a folder on the same disk, and takes them back:
// the longest that one event keeps the main thread, in its own time, as rows of a Markdown table.
// The panel's window isn't drawn.

#include "VelmoUI/Notch/NotchContent.h"

#include "benchmarks/PanelWork.h"

#include <QDir>

#include <algorithm>
#include <cstdio>

namespace velmo {
namespace {

constexpr int rounds = 3;

double processorMilliseconds()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

/// Measures what it is given.
class MeasuredApplication : public QApplication {
public:
    using QApplication::QApplication;

    bool notify(QObject *receiver, QEvent *event) override
    {
        if (QThread::currentThread() != thread())
            return QApplication::notify(receiver, event);
        const double before = processorMilliseconds();
        const bool result = QApplication::notify(receiver, event);
        longest = std::max(longest, processorMilliseconds() - before);
        return result;
    }

    double longest = 0; ///< event since this was reset, in milliseconds
};

class Dropping {
public:
    explicit Dropping(MeasuredApplication &application) : m_application(application)
    {
        ServiceWiring::start(services());
    }

    void print(int count)
    {
        double drop = 0, moving = 0, undo = 0, returning = 0;
        for (int round = 0; round < rounds; ++round) {
            const std::vector<DroppedItem> files = makeFiles(count);
            drop = std::max(drop, work([&] {
                                m_model.drop().setZone(DropZone::notch);
                                m_model.drop().receive(files);
                            }));
            moving = std::max(moving, finish(count));
            undo = std::max(undo, work([&] { m_model.drop().undo(); }));
            returning = std::max(returning, finish(0));
        }
        std::printf("| %d | %.1f | %.1f | %.1f | %.1f |\n", count, drop, moving, undo, returning);
    }

private:
    AppServices &services() { return m_panel.services(); }
    std::vector<DroppedItem> makeFiles(int count)
    {
        QDir().mkpath(m_panel.path(QStringLiteral("Fotos")));
        std::vector<DroppedItem> files;
        for (int i = 0; i < count; ++i) {
            QFile file(m_panel.path(QStringLiteral("Fotos/Viagem de verão %1.jpg").arg(i)));
            if (!file.open(QIODevice::WriteOnly))
                qFatal("Can't write %s", qPrintable(file.fileName()));
            files.push_back({DroppedItem::File{QUrl::fromLocalFile(file.fileName())}});
        }
        return files;
    }
    static double work(const std::function<void()> &step)
    {
        const double before = processorMilliseconds();
        step();
        return processorMilliseconds() - before;
    }
    /// Until the shelf has that many, and no job runs.
    double finish(int count)
    {
        m_application.longest = 0;
        while (services().jobs->runningCount() > 0 ||
               int(services().shelf->items().size()) != count)
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
        services().shelf->flush();
        QApplication::processEvents();
        return m_application.longest;
    }

    MeasuredApplication &m_application;
    PanelWork m_panel;
    NotchViewModel m_model{1, NotchGeometry::metrics({}), services().panels()};
    NotchContent m_content{m_model, services().panels()};
};

} // namespace
} // namespace velmo

int main(int argc, char **argv)
{
    velmo::Renderer::choose();
    velmo::MeasuredApplication application(argc, argv);
    velmo::Dropping dropping(application);
    std::puts("| files | drop, ms | moving, ms | undo, ms | moving back, ms |\n"
              "|---:|---:|---:|---:|---:|");
    for (const int count : {3000, 10'000})
        dropping.print(count);
    return 0;
}
