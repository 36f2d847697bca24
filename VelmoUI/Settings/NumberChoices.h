#pragma once

#include <QStringList>

#include <vector>

namespace velmo {

/// A few usual numbers for a setting, beside the one that is set where that is another.
class NumberChoices {
public:
    /// In ascending order.
    explicit NumberChoices(std::vector<int> usual) : m_usual(std::move(usual)) {}

    std::vector<int> around(int current) const;
    /// As "50".
    QStringList numbers(int current) const;
    /// As "1 dia", "7 dias".
    QStringList days(int current) const;
    /// The place of what is set.
    int index(int current) const;
    /// What stands at that place; `current` where nothing does.
    int picked(int index, int current) const;

private:
    std::vector<int> m_usual;
};

} // namespace velmo
