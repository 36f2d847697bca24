// Types into a note among 2,000 of 2 KB and into one of 5 MB, on the display it is started on, and
// prints what a key costs the main thread until its frame is there: rows of a Markdown table.

#include "VelmoUI/Modules/Notes/NotesPageModel.h"

#include "benchmarks/PanelWork.h"

#include <algorithm>
#include <cstdio>

namespace velmo {
namespace {

constexpr int keys = 60;

QString textOf(int size, int number)
{
    QString text = QStringLiteral("Nota %1 #viagem\n").arg(number);
    while (text.size() < size)
        text += QStringLiteral("Comprar passagem e ligar para o hotel antes de sexta.\n");
    return text.left(size);
}

void type(PanelWork &panel, const char *what, int size)
{
    const Note note = panel.services().notes->createNote(textOf(size, 0));
    const double opening = panel.open(QStringLiteral("notes"), uuidText(note.id)).work;
    std::vector<double> costs;
    for (int i = 0; i < keys; ++i) {
        const QString key = QString(QChar(u'a' + i % 26));
        costs.push_back(panel.work([&] {
            QKeyEvent press(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, key);
            QCoreApplication::sendEvent(&panel.window(), &press);
        }));
    }
    std::ranges::sort(costs);
    panel.close();
    if (panel.services().notes->note(note.id)->text.size() != size + keys)
        qFatal("The keys went elsewhere");
    std::printf("| %s | %.1f | %.1f | %.1f |\n", what, opening, costs[keys / 2], costs[keys - 4]);
    panel.services().notes->deleteNote(note.id);
}

} // namespace
} // namespace velmo

int main(int argc, char **argv)
{
    using namespace velmo;
    Renderer::choose();
    const QApplication application(argc, argv);
    PanelWork panel;
    for (int i = 1; i <= 2000; ++i)
        panel.services().notes->createNote(textOf(2000, i));
    panel.services().notes->allTags(); // another thread reads the notes that come from a file
    panel.start();
    std::puts("| note | opening, ms | a key, ms | its 95th percentile, ms |");
    std::puts("|---|---:|---:|---:|");
    type(panel, "of 2 KB", 2000);
    type(panel, "of 90 KB", 90'000);
    type(panel, "of 5 MB", 5'000'000);
    return 0;
}
