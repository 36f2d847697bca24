#pragma once

#include <QString>

namespace velmo {

/// Where to go in the panel: a module, one of its items and what to do there. A module reads its
/// own items and verbs; what it doesn't know it ignores.
struct Route {
    QString module; ///< its id; empty for the one that showed last
    QString item;   ///< empty for none
    QString verb;   ///< as "compose"; empty to show only

    bool operator==(const Route &) const = default;
};

} // namespace velmo
