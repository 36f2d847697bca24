#include "VelmoUI/Modules/Frame/ModulePage.h"

namespace velmo {

void ModulePage::setWatched(bool isWatched)
{
    if (isWatched == m_isWatched)
        return;
    m_isWatched = isWatched;
    watch(isWatched);
    Q_EMIT watchedChanged();
}

} // namespace velmo
