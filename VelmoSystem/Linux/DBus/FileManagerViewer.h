#pragma once

#include "VelmoSystem/Ports/FileViewer.h"

#include <QDBusConnection>
#include <QObject>

namespace velmo {

/// `FileViewer` with `org.freedesktop.FileManager1` and the desktop's openers. Returns before
/// anything shows; what fails is logged and reported to `onFailure`.
class FileManagerViewer : public FileViewer {
public:
    explicit FileManagerViewer(QDBusConnection bus);

    void reveal(const std::vector<QUrl> &files) override;
    void open(const QUrl &url) override;

private:
    void openFolders(const std::vector<QUrl> &files);

    QDBusConnection m_bus;
    QObject m_context; ///< calls under way end with it
};

} // namespace velmo
