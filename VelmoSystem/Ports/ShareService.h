#pragma once

#include <QString>
#include <QUrl>

#include <vector>

namespace velmo {

/// The desktop's own way to hand files to somebody else.
class ShareService {
public:
    virtual ~ShareService() = default;

    /// False where the desktop has none; the user is then offered none.
    virtual bool isAvailable() const = 0;
    /// Returns before its window shows. Throws `LocalizedError`.
    virtual void share(const std::vector<QUrl> &files) = 0;
};

} // namespace velmo
