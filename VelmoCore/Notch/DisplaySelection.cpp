#include "VelmoCore/Notch/DisplaySelection.h"

#include "VelmoCore/Foundation/Overloaded.h"

#include <algorithm>

namespace velmo {
namespace {

using Screens = std::span<const ScreenDescriptor>;

DisplayID primaryScreen(Screens screens)
{
    const auto primary = std::ranges::find_if(screens, &ScreenDescriptor::isPrimary);
    return primary != screens.end() ? primary->displayID : screens.front().displayID;
}

DisplayID automaticScreen(Screens screens)
{
    const ScreenDescriptor *notched = nullptr;
    for (const ScreenDescriptor &screen : screens) {
        if (!screen.hasHardwareNotch())
            continue;
        if (screen.isBuiltIn)
            return screen.displayID;
        if (!notched)
            notched = &screen;
    }
    return notched ? notched->displayID : primaryScreen(screens);
}

} // namespace

std::vector<DisplayID> DisplaySelection::targets(const DisplayMode &mode, Screens screens)
{
    using Targets = std::vector<DisplayID>;
    if (screens.empty())
        return {};
    return std::visit(
        overloaded{
            [&](const DisplayMode::Automatic &) { return Targets{automaticScreen(screens)}; },
            [&](const DisplayMode::Primary &) { return Targets{primaryScreen(screens)}; },
            [&](const DisplayMode::All &) {
                Targets all;
                for (const ScreenDescriptor &screen : screens)
                    all.push_back(screen.displayID);
                return all;
            },
            [&](const DisplayMode::Specific &specific) {
                const bool isThere = std::ranges::any_of(
                    screens, [&](auto &screen) { return screen.displayID == specific.displayID; });
                return Targets{isThere ? specific.displayID : automaticScreen(screens)};
            },
        },
        mode.value);
}

} // namespace velmo
