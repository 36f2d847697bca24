#pragma once

#include <QUrl>

#include <functional>
#include <vector>

namespace velmo {

/// The desktop's file manager and openers.
class FileViewer {
public:
    virtual ~FileViewer() = default;

    /// Shows the files selected in the file manager; without one that can, opens their folder.
    virtual void reveal(const std::vector<QUrl> &files) = 0;
    virtual void open(const QUrl &url) = 0;

    /// Runs on the main thread with the reason, in the user's language, where neither is possible.
    std::function<void(const QString &)> onFailure = [](const QString &) {};
};

} // namespace velmo
