#pragma once

#include <QStringList>

#include <vector>

namespace velmo {

/// A few usual numbers for a setting, and the current one if it is not among them.
class NumberChoices {
public:
    /// In ascending order.
    explicit NumberChoices(std::vector<int> usual) : m_usual(std::move(usual)) {}

    std::vector<int> around(int current) const;
    /// As "50".
    QStringList numbers(int current) const;
    /// As "1 dia", "7 dias".
    QStringList days(int current) const;
    /// The place of the current number.
    int index(int current) const;
    /// The number at that place, else `current`.
    int picked(int index, int current) const;

private:
    std::vector<int> m_usual;
};

} // namespace velmo
