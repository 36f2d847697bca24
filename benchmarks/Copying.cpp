// Has another process copy long texts, images and short texts on the display it is started on, and
// prints what keeping them costs Orvane's main thread, and how long a short one takes from the copy
// to the history, beside CopyQ where that is installed: rows of Markdown tables.

#include "VelmoCore/Clipboard/ClipboardStore.h"
#include "VelmoCore/Foundation/SystemScheduler.h"
#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoSystem/Clipboard/ClipboardMonitor.h"
#include "VelmoSystem/Linux/LinuxPlatform.h"
#include "VelmoSystem/Linux/X11/X11Pasteboard.h"
#include "VelmoUI/Composition/AppServices.h"
#include "VelmoUI/Composition/BuiltInModules.h"
#include "VelmoUI/Composition/Renderer.h"
#include "VelmoUI/Composition/ServiceWiring.h"
#include "VelmoUI/Modules/Frame/ModuleRegistry.h"

#include <QApplication>
#include <QBuffer>
#include <QEventLoop>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QSocketNotifier>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <iostream>

namespace velmo {
namespace {

constexpr int textCount = 200;
constexpr int imageCount = 50;
constexpr int rounds = 40;
/// Longer than the time between two looks, and than a save waits.
constexpr Seconds rest = 0.9s;

double milliseconds(clockid_t clock)
{
    timespec time{};
    clock_gettime(clock, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

QString longText(int number)
{
    const QString line =
        QStringLiteral("%1: uma linha copiada, com acentuação e “aspas”. ").arg(number);
    return line.repeated(ClipItems::longestText / line.size() + 1).first(ClipItems::longestText);
}

QString shortText(int number)
{
    return QStringLiteral("Uma frase que alguém copia, a de número %1").arg(number);
}

/// Of a screen with windows and text on it.
QByteArray screenshot(int number)
{
    QImage image(1920, 1080, QImage::Format_RGB32);
    QPainter painter(&image);
    QLinearGradient ground(0, 0, image.width(), image.height());
    ground.setColorAt(0, QColor::fromHsv(number * 7 % 360, 120, 200));
    ground.setColorAt(1, Qt::darkBlue);
    painter.fillRect(image.rect(), ground);
    painter.fillRect(200, 100, 1500, 900, Qt::white);
    for (int y = 130; y < 980; y += 20)
        painter.drawText(220, y, longText(number + y).first(200));
    painter.end();
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return png;
}

/// The other process: copies what each line of its input says and prints when it did so.
int copyForOthers()
{
    SystemScheduler scheduler;
    X11Connection connection;
    X11Pasteboard pasteboard(connection, scheduler);
    QSocketNotifier input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [&] {
        std::string kind;
        int number = 0;
        if (!(std::cin >> kind >> number)) {
            QCoreApplication::quit();
            return;
        }
        Pasteboard::Contents contents;
        if (kind == "image")
            contents.png = screenshot(number);
        else
            contents.text = kind == "long" ? longText(number) : shortText(number);
        const double now = milliseconds(CLOCK_MONOTONIC);
        pasteboard.write(contents);
        std::printf("%.3f\n", now);
        std::fflush(stdout);
    });
    return QCoreApplication::exec();
}

double quantile(std::vector<double> values, double share)
{
    std::ranges::sort(values);
    return values[std::size_t(share * double(values.size() - 1) + 0.5)];
}

class Copying {
public:
    Copying()
        : m_platform(m_scheduler),
          m_services({m_folder.path(), m_folder.path(), m_folder.path()},
                     {DataProtectionStatus::Enabled{DataCipher(DataCipher::generateKeyData())}},
                     m_platform.ports())
    {
        m_services.settings->update(
            [](AppSettings &settings) { settings.clipboardMaxItems = 500; });
        for (auto &module : makeBuiltInModules(m_services))
            m_services.modules->add(std::move(module));
        ServiceWiring::start(m_services);
        m_other.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_other.start(QCoreApplication::applicationFilePath(), {QStringLiteral("copy")});
        if (!m_other.waitForStarted())
            qFatal("The other process doesn't start");
        pause(rest);
    }
    ~Copying()
    {
        m_other.closeWriteChannel();
        m_other.waitForFinished();
    }

    void printWork()
    {
        std::puts("| copy | median, ms | highest, ms |\n|---|---:|---:|");
        const std::pair<const char *, int> runs[] = {{"long", textCount}, {"image", imageCount}};
        for (const auto &[kind, count] : runs) {
            std::vector<double> work;
            for (int number = 0; number < count; ++number) {
                const double before = milliseconds(CLOCK_THREAD_CPUTIME_ID);
                copyAndWait(kind, number);
                pause(rest); // for the save
                work.push_back(milliseconds(CLOCK_THREAD_CPUTIME_ID) - before);
            }
            std::printf("| %s | %.1f | %.1f |\n", kind, quantile(work, 0.5), quantile(work, 1));
            std::fflush(stdout);
        }
    }

    void printLatency()
    {
        std::puts("| program | median, ms | 95th percentile, ms |\n|---|---:|---:|");
        std::vector<double> times;
        for (int number = 0; number < rounds; ++number) {
            times.push_back(copyAndWait("short", number));
            pause(rest);
        }
        printLatency("orvane", times);
        m_services.clipboardMonitor->stop();
        if (!QStandardPaths::findExecutable(QStringLiteral("copyq")).isEmpty())
            printLatency("copyq", copyBesideCopyQ());
    }

private:
    static void printLatency(const char *name, const std::vector<double> &times)
    {
        std::printf("| %s | %.1f | %.1f |\n", name, quantile(times, 0.5), quantile(times, 0.95));
        std::fflush(stdout);
    }

    void pause(Seconds time)
    {
        QEventLoop loop;
        const ScheduledTask task = m_scheduler.after(time, [&] { loop.quit(); });
        loop.exec();
    }

    void tellOther(const char *kind, int number)
    {
        m_other.write(QByteArray(kind) + ' ' + QByteArray::number(number) + '\n');
    }
    double timeOfCopy()
    {
        while (!m_other.canReadLine() && m_other.waitForReadyRead()) {
        }
        return m_other.readLine().toDouble();
    }

    /// Milliseconds from the copy to the item in the history.
    double copyAndWait(const char *kind, int number)
    {
        QEventLoop loop;
        double arrival = 0;
        QObject::connect(m_services.clipboard.get(), &ClipboardStore::itemsChanged, &loop, [&] {
            arrival = milliseconds(CLOCK_MONOTONIC);
            loop.quit();
        });
        tellOther(kind, number);
        const ScheduledTask limit = m_scheduler.after(20s, [] { qFatal("Nothing came"); });
        loop.exec();
        return arrival - timeOfCopy();
    }

    /// The same by CopyQ's newest item, which one of its own scripts looks at every 2 ms.
    std::vector<double> copyBesideCopyQ()
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), m_folder.path());
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_folder.path());
        QProcess server;
        QProcess script;
        for (QProcess *process : {&server, &script})
            process->setProcessEnvironment(environment);
        server.start(QStringLiteral("copyq"), QStringList());
        pause(5s);
        script.start(
            QStringLiteral("copyq"),
            {QStringLiteral("eval"),
             QStringLiteral("var last = ''; while (true) { var now = str(read(0)); if (now != "
                            "last) { last = now; print('x'); } sleep(2); }")});
        pause(2s);
        std::vector<double> times;
        for (int number = 0; number < rounds; ++number) {
            script.readAll();
            QEventLoop loop;
            double arrival = 0;
            QObject::connect(&script, &QProcess::readyRead, &loop, [&] {
                arrival = milliseconds(CLOCK_MONOTONIC);
                loop.quit();
            });
            tellOther("short", number);
            const ScheduledTask limit =
                m_scheduler.after(20s, [] { qFatal("CopyQ kept nothing"); });
            loop.exec();
            times.push_back(arrival - timeOfCopy());
            pause(rest);
        }
        script.kill(); // it would go on
        script.waitForFinished();
        server.terminate();
        server.waitForFinished();
        return times;
    }

    const QTemporaryDir m_folder;
    SystemScheduler m_scheduler;
    LinuxPlatform m_platform;
    AppServices m_services;
    QProcess m_other;
};

} // namespace
} // namespace velmo

int main(int argc, char **argv)
{
    velmo::Renderer::choose();
    const QApplication application(argc, argv);
    if (argc > 1)
        return velmo::copyForOthers();
    velmo::Copying copying;
    copying.printWork();
    copying.printLatency();
    return 0;
}
