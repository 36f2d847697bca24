#pragma once

#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoCore/Jobs/JobCenter.h"
#include "VelmoCore/Shelf/DropUndo.h"
#include "VelmoCore/Shelf/DroppedItem.h"
#include "VelmoCore/Shelf/ShelfStore.h"

#include <functional>
#include <optional>
#include <vector>

namespace velmo {

/// Moves files onto the shelf and back home, each batch by a job. Main thread only.
class ShelfMover {
public:
    struct Move {
        QUrl from;
        QUrl to;
    };
    /// Files stand elsewhere now, in the order in which they were given. Main thread.
    using Moved = std::function<void(const std::vector<Move> &)>;
    /// Nothing moves any more; whether all have. Main thread.
    using Finished = std::function<void(bool isComplete)>;

    /// All of them outlive this object and its jobs.
    ShelfMover(ShelfStore &shelf, DropUndo &undo, JobCenter &jobs, ActivityCenter &activity,
               Scheduler &scheduler);

    /// Puts dropped things on the shelf: links and texts at once, files by a job that moves them
    /// into the notch's folder, whose id this gives. Application bundles and what is there already
    /// stay where they are. No file comes in before the shelf has its record on disk. One that
    /// fails doesn't keep the others from moving; none is anywhere else than the shelf says, also
    /// after a cancel and at the end of the run. What has been moved in can be taken back.
    std::optional<QString> moveIn(const std::vector<DroppedItem> &items, const Moved &moved,
                                  const Finished &finished);
    /// The same; where nothing has to move, the activity says that the things are kept.
    std::optional<QString> keep(const std::vector<DroppedItem> &items, const Moved &moved,
                                const Finished &finished);
    /// Takes items off the shelf: at once, or by a job where that may take its time, whose id this
    /// gives.
    std::optional<QString> remove(const std::vector<Uuid> &items);
    /// Takes back what the last drop moved in, as long as that is offered.
    void undoDrop(const Moved &moved, const Finished &finished);

private:
    struct Leaving {
        Uuid item; ///< removed from the shelf; its end is reported to the shelf
        QUrl from;
        QUrl to; ///< unless something of that name stands there
    };
    enum class Kind { moveIn, moveHome };
    struct Transfer {
        Kind kind;
        std::vector<QUrl> arriving = {};   ///< of `moveIn`
        std::vector<Leaving> leaving = {}; ///< of `moveHome`
        Moved moved = [](const auto &) {};
        Finished finished = [](bool) {};
    };
    struct Labels;
    struct Undoing;
    class Ledger;
    class Carrier;

    static Labels labelsOf(Kind kind);
    std::vector<QUrl> addTheRest(const std::vector<DroppedItem> &items);
    QString start(const Transfer &transfer);
    void departNext(const std::shared_ptr<Undoing> &undoing);

    ShelfStore &m_shelf;
    DropUndo &m_undo;
    JobCenter &m_jobs;
    ActivityCenter &m_activity;
    Scheduler &m_scheduler;
};

} // namespace velmo
