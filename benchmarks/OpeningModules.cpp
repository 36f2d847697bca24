// Opens the panel on each module, on the display it is started on, and prints when the first frame
// that shows it is there and what that costs the main thread: rows of a Markdown table.

#include "benchmarks/PanelWork.h"

#include <cstdio>

int main(int argc, char **argv)
{
    using namespace velmo;
    Renderer::choose();
    const QApplication application(argc, argv);
    PanelWork panel;
    panel.services().settings->update([](AppSettings &settings) { settings.hiddenHomeCards = {}; });
    panel.start();
    std::puts("| module | first time, ms | work, ms | second time, ms | work, ms |");
    std::puts("|---|---:|---:|---:|---:|");
    for (const NotchModule *module : panel.services().modules->ordered(ModuleSettings())) {
        const auto open = [&] {
            const PanelWork::Cost cost = panel.open(module->id());
            panel.close();
            return cost;
        };
        const PanelWork::Cost first = open();
        const PanelWork::Cost second = open();
        std::printf("| %s | %.1f | %.1f | %.1f | %.1f |\n", qPrintable(module->title()), first.wall,
                    first.work, second.wall, second.work);
    }
    return 0;
}
