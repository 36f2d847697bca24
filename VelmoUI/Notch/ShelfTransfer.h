#pragma once

#include "VelmoCore/Foundation/Uuid.h"

#include <QUrl>

#include <functional>
#include <vector>

namespace velmo {

class AppServices;

/// Files that a job carries between the shelf's folder and another file system.
struct ShelfTransfer {
    struct File {
        Uuid item; ///< expected by the shelf, or removed from it; settled at the end
        QUrl from;
        QUrl to; ///< unless something of that name stands there
    };
    enum class Kind { moveIn, copyIn, moveHome };
    /// A file stands elsewhere now. Main thread.
    using Moved = std::function<void(const QUrl &from, const QUrl &to)>;

    Kind kind;
    std::vector<File> files;
    Moved moved = [](const auto &, const auto &) {};

    /// Gives the job's id. A file that fails doesn't keep the others from moving; none is anywhere
    /// else than the shelf says, also after a cancel and at the end of the run.
    QString start(AppServices &services) const;
};

/// Tells of so many items that have come onto the shelf.
QString keptTitle(std::size_t count);

/// Takes items off the shelf: at once, or by a job where their files have to be copied home.
void takeOffShelf(AppServices &services, const std::vector<Uuid> &items);

} // namespace velmo
