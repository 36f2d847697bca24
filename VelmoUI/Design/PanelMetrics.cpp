#include "VelmoUI/Design/PanelMetrics.h"

#include <algorithm>
#include <cmath>

namespace velmo {

double PanelMetrics::row(int count, double item, double gap)
{
    return count < 1 ? 0 : count * item + (count - 1) * gap;
}

double PanelMetrics::fill(int count, double available, double minimum, double maximum, double gap)
{
    if (count < 1 || available <= 0)
        return minimum;
    const double share = (available - gap * (count - 1)) / count;
    return std::floor(std::min(maximum, std::max(minimum, share)));
}

} // namespace velmo
