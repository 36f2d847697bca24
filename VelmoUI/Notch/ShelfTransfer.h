#pragma once

#include "VelmoCore/Foundation/Uuid.h"

#include <QUrl>

#include <functional>
#include <optional>
#include <vector>

namespace velmo {

class AppServices;

/// Files that a job carries into the shelf's folder or out of it.
struct ShelfTransfer {
    struct Leaving {
        Uuid item; ///< removed from the shelf; settled at the end
        QUrl from;
        QUrl to; ///< unless something of that name stands there
    };
    struct Move {
        QUrl from;
        QUrl to;
    };
    enum class Kind { moveIn, copyIn, moveHome };
    /// Files stand elsewhere now, in the order in which they were given. Main thread.
    using Moved = std::function<void(const std::vector<Move> &)>;
    /// Nothing moves any more; whether all have. Main thread.
    using Finished = std::function<void(bool isComplete)>;

    Kind kind;
    std::vector<QUrl> arriving = {};   ///< of `moveIn` and `copyIn`
    std::vector<Leaving> leaving = {}; ///< of `moveHome`
    Moved moved = [](const auto &) {};
    Finished finished = [](bool) {};

    /// Gives the job's id. No file comes in before the shelf has its record on disk. A file that
    /// fails doesn't keep the others from moving; none is anywhere else than the shelf says, also
    /// after a cancel and at the end of the run. What has been moved in can be taken back.
    QString start(AppServices &services) const;
};

/// Tells of so many items that have come onto the shelf.
QString keptTitle(std::size_t count);

/// Takes items off the shelf: at once, or by a job where that may take its time. Gives the job's
/// id.
std::optional<QString> takeOffShelf(AppServices &services, const std::vector<Uuid> &items);

/// Takes back what the last drop moved in, as long as that is offered.
void undoDrop(AppServices &services, const ShelfTransfer::Moved &moved,
              const ShelfTransfer::Finished &finished);

} // namespace velmo
