#include "Velmo/Probes.h"

#include <algorithm>

namespace velmo {

namespace {

/// What follows `flag`, nothing if it isn't there or is the last argument.
std::optional<QString> argumentOf(const QStringList &arguments, const QString &flag)
{
    const qsizetype place = arguments.indexOf(flag);
    if (place < 0 || place + 1 >= arguments.size())
        return std::nullopt;
    return arguments[place + 1];
}

} // namespace

bool Probes::isSelfTest(const QStringList &arguments)
{
    return std::ranges::any_of(arguments, [](const QString &argument) {
        return argument.startsWith(QStringLiteral("--probe-"));
    });
}

std::optional<Probes::Trust> Probes::early(const QStringList &arguments)
{
    if (const auto path = argumentOf(arguments, QStringLiteral("--probe-trust")))
        return Trust{*path};
    return std::nullopt;
}

std::optional<std::variant<Probes::Open, Probes::Drop>>
Probes::ofPanel(const QStringList &arguments)
{
    if (const auto text = argumentOf(arguments, QStringLiteral("--probe-open"))) {
        bool isNumber = false;
        const double seconds = text->toDouble(&isNumber);
        if (isNumber)
            return Open{Seconds(seconds)};
    }
    if (const auto file = argumentOf(arguments, QStringLiteral("--probe-drop")))
        return Drop{*file};
    return std::nullopt;
}

} // namespace velmo
