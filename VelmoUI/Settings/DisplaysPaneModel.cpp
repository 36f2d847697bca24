#include "VelmoUI/Settings/DisplaysPaneModel.h"

#include "VelmoSystem/Ports/Displays.h"

#include <algorithm>

namespace velmo {

DisplaysPaneModel::DisplaysPaneModel(SettingsStore &settings, Displays &displays)
    : m_settings(settings), m_displays(displays)
{
    connect(&settings, &SettingsStore::settingsChanged, this, &DisplaysPaneModel::changed);
    connect(&displays, &Displays::changed, this, &DisplaysPaneModel::changed);
}

QStringList DisplaysPaneModel::choices() const
{
    QStringList titles;
    for (const Choice &choice : all())
        titles.append(choice.title);
    return titles;
}

QStringList DisplaysPaneModel::details() const
{
    QStringList details;
    for (const Choice &choice : all())
        details.append(choice.detail);
    return details;
}

int DisplaysPaneModel::current() const
{
    const auto choices = all();
    const auto chosen =
        std::ranges::find(choices, m_settings.settings().displayMode, &Choice::mode);
    return int(chosen - choices.begin());
}

void DisplaysPaneModel::choose(int index)
{
    const auto choices = all();
    if (index < 0 || index >= int(choices.size()))
        return;
    m_settings.update(
        [&](AppSettings &settings) { settings.displayMode = choices[std::size_t(index)].mode; });
}

std::vector<DisplaysPaneModel::Choice> DisplaysPaneModel::all() const
{
    std::vector<Choice> choices{
        {{DisplayMode::Automatic{}},
         QStringLiteral("Automático"),
         QStringLiteral("A tela com recorte de câmera; sem ela, a principal")},
        {{DisplayMode::Primary{}}, QStringLiteral("Tela principal"), {}},
        {{DisplayMode::All{}}, QStringLiteral("Todas as telas"), {}},
    };
    for (const ScreenDescriptor &screen : m_displays.allDescriptors())
        choices.push_back(
            {{DisplayMode::Specific{screen.displayID, screen.name}},
             screen.name,
             QStringLiteral("%1 × %2").arg(screen.frame.width).arg(screen.frame.height)});
    const DisplayMode &mode = m_settings.settings().displayMode;
    const auto *specific = std::get_if<DisplayMode::Specific>(&mode.value);
    if (specific && std::ranges::find(choices, mode, &Choice::mode) == choices.end())
        choices.push_back({mode, specific->name,
                           QStringLiteral("Não conectada; por enquanto vale o automático")});
    return choices;
}

} // namespace velmo
