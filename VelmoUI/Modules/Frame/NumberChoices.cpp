#include "VelmoUI/Modules/Frame/NumberChoices.h"

#include "VelmoCore/Foundation/Words.h"

#include <algorithm>

namespace velmo {

std::vector<int> NumberChoices::around(int current) const
{
    std::vector<int> choices = m_usual;
    if (std::ranges::find(choices, current) == choices.end())
        choices.insert(std::ranges::upper_bound(choices, current), current);
    return choices;
}

QStringList NumberChoices::numbers(int current) const
{
    QStringList texts;
    for (const int number : around(current))
        texts += QString::number(number);
    return texts;
}

QStringList NumberChoices::days(int current) const
{
    QStringList texts;
    for (const int days : around(current))
        texts += Words::count(days, u"1 dia", u"%1 dias");
    return texts;
}

int NumberChoices::index(int current) const
{
    const std::vector<int> choices = around(current);
    return int(std::ranges::find(choices, current) - choices.begin());
}

int NumberChoices::picked(int index, int current) const
{
    const std::vector<int> choices = around(current);
    return index < 0 || index >= int(choices.size()) ? current : choices[std::size_t(index)];
}

} // namespace velmo
