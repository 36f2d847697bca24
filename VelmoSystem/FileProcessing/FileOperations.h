#pragma once

#include "VelmoCore/Files/FileTransfer.h"

#include <QUrl>

#include <functional>
#include <stop_token>
#include <variant>
#include <vector>

/// Operations on the user's files. Nothing is ever replaced; validation comes before any file is
/// touched. May run on any thread. All throw `FileError`, `OperationError` and `Cancelled`; the
/// files before the one that failed stay as they are by then.
namespace velmo::FileOperations {

class OperationError : public LocalizedError {
public:
    struct InvalidName {
        QString name;
        bool operator==(const InvalidName &) const = default;
    };
    struct NameTaken {
        QString name;
        bool operator==(const NameTaken &) const = default;
    };
    /// Files that could neither be renamed nor get their first names back, and where they are.
    struct NotUndone {
        QString reason;
        std::vector<QUrl> files;
        bool operator==(const NotUndone &) const = default;
    };
    using Value = std::variant<InvalidName, NameTaken, NotUndone>;

    explicit OperationError(const Value &value);

    const Value &value() const { return m_value; }

private:
    Value m_value;
};

/// 0 to 1.
using Progress = std::function<void(double)>;

/// Give the new URLs, in the order given.
QUrl rename(const QUrl &url, const QString &name);
/// All or none: after a failure every file has its first name again, and those that can't have it
/// are named by `NotUndone`. `date` is today's.
std::vector<QUrl> batchRename(const std::vector<QUrl> &urls, const QString &pattern, int start,
                              Date date, const Progress &progress, std::stop_token stop = {});
std::vector<QUrl> duplicate(const std::vector<QUrl> &urls, std::stop_token stop = {});
/// Those moved before a failure stay moved.
std::vector<QUrl> move(const std::vector<QUrl> &urls, const QUrl &folder,
                       std::stop_token stop = {});
/// Into a folder an extension, beside each file. Folders stay where they are and aren't given.
std::vector<QUrl> organizeByExtension(const std::vector<QUrl> &urls, const Progress &progress,
                                      std::stop_token stop = {});

} // namespace velmo::FileOperations
