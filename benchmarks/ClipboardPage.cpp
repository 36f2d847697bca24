// Opens the panel on a clipboard's history of 10,000 items, on the display it is started on,
// searches key by key, pins, removes and goes to its end, and prints what each costs the main
// thread until its frame is there: rows of a Markdown table. The highest of a few rounds counts.

#include "VelmoCore/Clipboard/ClipboardStore.h"
#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoUI/Modules/Clipboard/ClipboardPageModel.h"

#include "benchmarks/PanelWork.h"

#include <QColor>

#include <algorithm>
#include <cstdio>

namespace velmo {
namespace {

constexpr int count = 10'000;
constexpr int rounds = 5;

ClipItem copy(int number, Date date)
{
    const ClipSource source{QStringLiteral("Editor"), {}};
    const auto text = [&](const QString &copied) {
        return ClipItems::fromText(copied, source, date).value();
    };
    switch (number % 5) {
    case 0:
        return text(QStringLiteral("https://example.org/artigo/%1").arg(number));
    case 1:
        return text(QColor::fromRgb(QRgb(number * 1000)).name());
    case 2:
        return ClipItems::fromFiles(
                   {QUrl::fromLocalFile(QStringLiteral("/tmp/Arquivo %1").arg(number))}, source,
                   date)
            .value();
    default:
        return text(QStringLiteral("Um texto copiado de número %1, com tantas palavras quantas "
                                   "cabem em algumas linhas. ")
                        .arg(number)
                        .repeated(1 + number % 4));
    }
}

void fill(AppServices &services)
{
    services.settings->update([](AppSettings &settings) { settings.clipboardMaxItems = count; });
    services.clipboard->setLimits(count, services.settings->settings().clipboardRetentionDays);
    for (int number = 0; number < count; ++number)
        services.clipboard->add(copy(number, services.platform.scheduler.now()));
}

void print(PanelWork &panel)
{
    double first = 0;
    double later = 0;
    double key = 0;
    double kind = 0;
    double pin = 0;
    double removal = 0;
    double end = 0;
    const auto keep = [](double &highest, double spent) { highest = std::max(highest, spent); };
    const double other = panel.open(QStringLiteral("activity")).work;
    panel.close();
    for (int round = 0; round < rounds; ++round) {
        keep(round == 0 ? first : later, panel.open(QStringLiteral("clipboard")).work);
        auto &page = panel.page<ClipboardPageModel>();
        const auto press = [&](int pressed, int modifiers = Qt::NoModifier) {
            return panel.work([&] { page.handleKey(pressed, modifiers); });
        };
        for (const char *text : {"7", "77", "777", "77", "t", "te", ""})
            keep(key, panel.work([&] { page.search(QString::fromLatin1(text)); }));
        for (const int index : {1, 2, 5, 0})
            keep(kind, panel.work([&] { page.setKindIndex(index); }));
        keep(end, press(Qt::Key_End));
        keep(pin, press(Qt::Key_P, Qt::ControlModifier));
        keep(pin, press(Qt::Key_P, Qt::ControlModifier));
        keep(end, press(Qt::Key_Home));
        keep(removal, press(Qt::Key_Delete));
        keep(removal, press(Qt::Key_Z, Qt::ControlModifier));
        panel.close();
    }
    std::printf("| step, %zu items | work, ms |\n|---|---:|\n",
                panel.services().clipboard->items().size());
    std::printf("| the panel's first opening, on another module | %.1f |\n"
                "| opening, first time | %.1f |\n| opening again | %.1f |\n"
                "| a key of the search | %.1f |\n| another kind | %.1f |\n"
                "| pinning the last one | %.1f |\n| removing, bringing back | %.1f |\n"
                "| going to the other end | %.1f |\n",
                other, first, later, key, kind, pin, removal, end);
}

} // namespace
} // namespace velmo

int main(int argc, char **argv)
{
    velmo::Renderer::choose();
    const QApplication application(argc, argv);
    velmo::PanelWork panel;
    velmo::fill(panel.services());
    panel.start();
    velmo::print(panel);
    return 0;
}
