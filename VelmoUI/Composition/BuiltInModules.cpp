#include "VelmoUI/Composition/BuiltInModules.h"

#include "VelmoSystem/Verbs/ActivityVerbs.h"
#include "VelmoSystem/Verbs/AgendaVerbs.h"
#include "VelmoSystem/Verbs/ClipboardVerbs.h"
#include "VelmoSystem/Verbs/FilesVerbs.h"
#include "VelmoSystem/Verbs/MailVerbs.h"
#include "VelmoSystem/Verbs/NoteVerbs.h"
#include "VelmoSystem/Verbs/SettingsVerbs.h"
#include "VelmoSystem/Verbs/ShelfVerbs.h"
#include "VelmoSystem/Verbs/TimerVerbs.h"
#include "VelmoUI/Composition/AppServices.h"
#include "VelmoUI/Modules/Activity/ActivityModule.h"
#include "VelmoUI/Modules/Calendar/CalendarModule.h"
#include "VelmoUI/Modules/Clipboard/ClipboardModule.h"
#include "VelmoUI/Modules/Home/HomeModule.h"
#include "VelmoUI/Modules/Mail/MailModule.h"
#include "VelmoUI/Modules/Notes/NotesModule.h"
#include "VelmoUI/Modules/Shelf/ShelfModule.h"
#include "VelmoUI/Modules/System/SystemModule.h"
#include "VelmoUI/Modules/Timers/TimersModule.h"
#include "VelmoUI/Modules/Tools/ToolsModule.h"

#include <array>

namespace velmo {

namespace {

using Module = std::unique_ptr<NotchModule>;
using Syntaxes = std::vector<VerbSyntax>;

struct BuiltIn {
    Module (*make)(AppServices &services);
    /// Its verbs as they are written, which are known without the module.
    Syntaxes (*syntaxes)();
};

Syntaxes noVerbs()
{
    return {};
}

const std::array modules = {
    BuiltIn{[](AppServices &all) -> Module {
                return std::make_unique<HomeModule>(*all.settings, *all.modules, *all.hotKeys,
                                                    *all.activity, all.platform.applications,
                                                    all.platform.scheduler);
            },
            noVerbs},
    BuiltIn{[](AppServices &all) -> Module {
                return std::make_unique<ToolsModule>(*all.tools, *all.toolsWork, *all.jobs,
                                                     *all.activity, all.platform.fileViewer,
                                                     all.platform.scheduler);
            },
            FilesVerbs::syntaxes},
    BuiltIn{[](AppServices &all) -> Module {
                return std::make_unique<ShelfModule>(ShelfServices{*all.shelf, *all.shelfMover,
                                                                   *all.actionRunner,
                                                                   all.platform.scheduler},
                                                     *all.settings, *all.jobs, *all.activity);
            },
            ShelfVerbs::syntaxes},
    BuiltIn{[](AppServices &all) -> Module {
                return std::make_unique<ClipboardModule>(
                    ClipboardServices{*all.clipboard, *all.clipboardMonitor, *all.settings,
                                      all.platform.fileViewer, all.platform.scheduler},
                    all.platform.applications);
            },
            ClipboardVerbs::syntaxes},
    BuiltIn{[](AppServices &all) -> Module {
                return std::make_unique<CalendarModule>(
                    CalendarServices{*all.calendar, *all.notes, *all.activity,
                                     all.platform.fileViewer, all.platform.applications,
                                     all.platform.permissions, all.platform.scheduler},
                    *all.settings, *all.notifier);
            },
            AgendaVerbs::syntaxes},
    BuiltIn{[](AppServices &all) -> Module {
                return std::make_unique<MailModule>(
                    MailServices{*all.mail, *all.signIns, *all.activity, all.platform.fileViewer,
                                 all.platform.scheduler});
            },
            MailVerbs::syntaxes},
    BuiltIn{[](AppServices &all) -> Module {
                return std::make_unique<NotesModule>(
                    NotesServices{*all.notes, all.platform.fileViewer, all.platform.pasteboard,
                                  all.platform.scheduler},
                    *all.notifier);
            },
            NoteVerbs::syntaxes},
    BuiltIn{[](AppServices &all) -> Module {
                return std::make_unique<TimersModule>(*all.timers, *all.settings, *all.activity,
                                                      *all.notifier, all.platform.sounds,
                                                      all.platform.scheduler);
            },
            TimerVerbs::syntaxes},
    BuiltIn{[](AppServices &all) -> Module {
                return std::make_unique<SystemModule>(SystemSources{
                    *all.connectivity, *all.permissions, all.platform.power,
                    all.platform.accessories, all.platform.load, all.platform.scheduler});
            },
            noVerbs},
    BuiltIn{[](AppServices &all) -> Module {
                return std::make_unique<ActivityModule>(*all.activity, all.platform.fileViewer,
                                                        all.platform.scheduler);
            },
            ActivityVerbs::syntaxes},
};

} // namespace

std::vector<std::unique_ptr<NotchModule>> makeBuiltInModules(AppServices &services)
{
    std::vector<std::unique_ptr<NotchModule>> made;
    for (const BuiltIn &module : modules)
        made.push_back(module.make(services));
    return made;
}

std::vector<VerbSyntax> builtInVerbSyntaxes()
{
    Syntaxes all = SettingsVerbs::syntaxes();
    for (const BuiltIn &module : modules)
        std::ranges::move(module.syntaxes(), std::back_inserter(all));
    return all;
}

} // namespace velmo
