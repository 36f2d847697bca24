#include "Velmo/Probes.h"

#include <algorithm>

namespace velmo {

namespace {

bool isFlag(const QString &argument)
{
    return argument.startsWith(QStringLiteral("--probe-"));
}

/// All that follow `flag` up to the next one.
QStringList argumentsOf(const QStringList &arguments, const QString &flag)
{
    const auto place = std::ranges::find(arguments, flag);
    if (place == arguments.end())
        return {};
    return {place + 1, std::find_if(place + 1, arguments.end(), isFlag)};
}

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
    return std::ranges::any_of(arguments, isFlag);
}

std::optional<std::variant<Probes::Compress, Probes::Trust>>
Probes::early(const QStringList &arguments)
{
    QStringList files = argumentsOf(arguments, QStringLiteral("--probe-compress"));
    if (files.size() > 1) {
        const QString outputPath = files.takeFirst();
        return Compress{outputPath, files};
    }
    if (const auto path = argumentOf(arguments, QStringLiteral("--probe-trust")))
        return Trust{*path};
    return std::nullopt;
}

std::vector<std::variant<Probes::Open, Probes::Drop>> Probes::ofPanel(const QStringList &arguments)
{
    std::vector<std::variant<Open, Drop>> probes;
    if (const auto text = argumentOf(arguments, QStringLiteral("--probe-open"))) {
        bool isNumber = false;
        const double seconds = text->toDouble(&isNumber);
        if (isNumber)
            probes.emplace_back(Open{Seconds(seconds)});
    }
    if (const auto file = argumentOf(arguments, QStringLiteral("--probe-drop")))
        probes.emplace_back(Drop{*file});
    return probes;
}

} // namespace velmo
