#pragma once

#include <QImage>
#include <QString>

#include <stop_token>

namespace velmo {

/// Pictures of what is in files.
class Thumbnailer {
public:
    virtual ~Thumbnailer() = default;

    /// A picture of the file at `path` that fits a square of `side` pixels, null where there is
    /// none. Reads the file and may wait for other programs, so never on the main thread; soon ends
    /// with null once `stop` is requested. May run on several threads at once.
    virtual QImage picture(const QString &path, int side, std::stop_token stop) = 0;
};

} // namespace velmo
