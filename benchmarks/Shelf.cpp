// Opens the panel on a shelf of 1,000 items, on the display it is started on, searches key by key,
// selects and scrolls, and prints what each costs the main thread until its frame is there: rows of
// a Markdown table. The highest of a few rounds counts.

#include "VelmoUI/Modules/Shelf/ShelfPageModel.h"

#include "benchmarks/PanelWork.h"

#include <algorithm>
#include <cstdio>

namespace velmo {
namespace {

constexpr int count = 1000;
constexpr int rounds = 5;

void putOnShelf(PanelWork &panel)
{
    std::vector<QUrl> files;
    for (int i = 0; i < count; ++i) {
        QFile file(panel.path(QStringLiteral("Relatório de viagem %1.txt").arg(i)));
        if (!file.open(QIODevice::WriteOnly))
            qFatal("Can't write %s", qPrintable(file.fileName()));
        files.push_back(QUrl::fromLocalFile(file.fileName()));
    }
    panel.services().shelf->addReferences(files);
}

void print(PanelWork &panel)
{
    double first = 0;
    double later = 0;
    double key = 0;
    double everything = 0;
    double end = 0;
    const double other = panel.open(QStringLiteral("activity")).work;
    panel.close();
    for (int round = 0; round < rounds; ++round) {
        double &opening = round == 0 ? first : later;
        opening = std::max(opening, panel.open(QStringLiteral("shelf")).work);
        auto &page = panel.page<ShelfPageModel>();
        for (const char *text : {"7", "77", "775", "77", "7", ""})
            key = std::max(key, panel.work([&] { page.search(QString::fromLatin1(text)); }));
        everything = std::max(everything,
                              panel.work([&] { page.handleKey(Qt::Key_A, Qt::ControlModifier); }));
        end = std::max(end, panel.work([&] { page.handleKey(Qt::Key_End, Qt::NoModifier); }));
        panel.work([&] { page.handleKey(Qt::Key_Home, Qt::NoModifier); });
        panel.close();
    }
    std::puts("| step, 1,000 items | work, ms |\n|---|---:|");
    std::printf("| the panel's first opening, on another module | %.1f |\n"
                "| opening, first time | %.1f |\n| opening again | %.1f |\n"
                "| a key of the search | %.1f |\n| selecting all | %.1f |\n"
                "| going to the other end | %.1f |\n",
                other, first, later, key, everything, end);
}

} // namespace
} // namespace velmo

int main(int argc, char **argv)
{
    velmo::Renderer::choose();
    const QApplication application(argc, argv);
    velmo::PanelWork panel;
    velmo::putOnShelf(panel);
    panel.start();
    velmo::print(panel);
    return 0;
}
