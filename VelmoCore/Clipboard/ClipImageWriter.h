#pragma once

#include "VelmoCore/Storage/DataFiles.h"

namespace velmo {

/// The folder of the history's images, each sealed in a file of its own. A plain value that any
/// thread may use.
struct ClipImageWriter {
    std::optional<QString> directory;
    DataFiles files;

    /// The image's path; nothing without a folder, and for what isn't a plain name.
    std::optional<QString> path(const QString &name) const;
    /// Gives the new file's name. It waits for the key where that is awaited. Throws `FileError`,
    /// without a folder that of a missing file, and `DataFiles::KeyAbandoned`.
    QString store(const QByteArray &data) const;
    /// The image's bytes; nothing where they can't be read. A plain file is sealed at once when a
    /// cipher is at hand.
    std::optional<QByteArray> read(const QString &name) const;
    /// Seals a file that an earlier version left in plain. A failure leaves it for the next time.
    void sealIfPlain(const QString &name) const;
    /// Removes the file. What can't be removed stays.
    void remove(const QString &name) const;
};

} // namespace velmo
