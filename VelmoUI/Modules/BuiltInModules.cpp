#include "VelmoUI/Modules/BuiltInModules.h"

#include "VelmoUI/Modules/Activity/ActivityModule.h"
#include "VelmoUI/Modules/Activity/ActivityVerbs.h"
#include "VelmoUI/Modules/Clipboard/ClipboardModule.h"
#include "VelmoUI/Modules/Clipboard/ClipboardVerbs.h"
#include "VelmoUI/Modules/Home/HomeModule.h"
#include "VelmoUI/Modules/ModuleRegistry.h"
#include "VelmoUI/Modules/Notes/NoteVerbs.h"
#include "VelmoUI/Modules/Notes/NotesModule.h"
#include "VelmoUI/Modules/Shelf/ShelfModule.h"
#include "VelmoUI/Modules/Shelf/ShelfVerbs.h"
#include "VelmoUI/Modules/System/SystemModule.h"
#include "VelmoUI/Modules/Timers/TimerVerbs.h"
#include "VelmoUI/Modules/Timers/TimersModule.h"
#include "VelmoUI/Modules/Tools/FilesVerbs.h"
#include "VelmoUI/Modules/Tools/ToolsModule.h"
#include "VelmoUI/Settings/SettingsVerbs.h"

namespace velmo {

void addBuiltInModules(ModuleRegistry &modules)
{
    modules.add(std::make_unique<HomeModule>());
    modules.add(std::make_unique<ToolsModule>());
    modules.add(std::make_unique<ShelfModule>());
    modules.add(std::make_unique<ClipboardModule>());
    modules.add(std::make_unique<NotesModule>());
    modules.add(std::make_unique<TimersModule>());
    modules.add(std::make_unique<SystemModule>());
    modules.add(std::make_unique<ActivityModule>());
}

std::vector<VerbSyntax> builtInVerbSyntaxes()
{
    std::vector<VerbSyntax> all;
    for (const auto &syntaxes :
         {ClipboardVerbs::syntaxes(), ShelfVerbs::syntaxes(), NoteVerbs::syntaxes(),
          TimerVerbs::syntaxes(), FilesVerbs::syntaxes(), ActivityVerbs::syntaxes(),
          SettingsVerbs::syntaxes()})
        all.insert(all.end(), syntaxes.begin(), syntaxes.end());
    return all;
}

} // namespace velmo
