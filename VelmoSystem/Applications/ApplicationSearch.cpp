#include "VelmoSystem/Applications/ApplicationSearch.h"

#include "VelmoCore/Foundation/Text.h"

#include <algorithm>

namespace velmo {

std::vector<Applications::Application> ApplicationSearch::find(const Applications &applications,
                                                               const QString &text)
{
    const QString wanted = Text::folded(text.trimmed());
    auto found = applications.installed();
    std::erase_if(found, [&](const auto &application) {
        return !Text::folded(application.name).contains(wanted) &&
               !Text::folded(application.keywords).contains(wanted);
    });
    std::ranges::stable_partition(found, [&](const auto &application) {
        return Text::folded(application.name).startsWith(wanted);
    });
    return found;
}

QString ApplicationSearch::iconSource(const Applications::Application &application)
{
    return QStringLiteral("image://icon/") +
           QString::fromLatin1(QUrl::toPercentEncoding(application.icon));
}

} // namespace velmo
