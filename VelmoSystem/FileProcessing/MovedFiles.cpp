#include "VelmoSystem/FileProcessing/MovedFiles.h"

#include "VelmoCore/Files/FileTransfer.h"
#include "VelmoCore/Files/PendingFiles.h"
#include "VelmoCore/Foundation/Log.h"

#include <QDir>
#include <QFileInfo>

#include <cerrno>

namespace velmo {

namespace {

struct Step {
    QString from;
    QString to;
    QString known; ///< to the user
};

/// The failure of a step from a hidden name, which the user doesn't know.
FileError renamed(const FileError &error, const Step &step)
{
    switch (error.code()) {
    case EEXIST:
        return {step.to, error.code()};
    case ENOENT:
    case ENOTDIR:
    case EACCES:
    case EROFS:
        return {QFileInfo(step.to).path(), error.code()};
    default:
        return {step.known, error.code()};
    }
}

void reverse(const std::vector<Step> &steps)
{
    for (auto step = steps.rbegin(); step != steps.rend(); ++step) {
        try {
            FileTransfer::move(step->to, step->from);
        } catch (const LocalizedError &error) {
            qCWarning(Log::storage).noquote() << step->to << error.description();
        }
    }
}

} // namespace

void MovedFiles::takeBack(std::stop_token stop) const
{
    // By way of names that nobody has, as two files may have changed names with each other.
    PendingFiles::restoreBeside(now);
    const PendingFiles::Renaming renaming(now, before);
    std::vector<Step> steps;
    for (std::size_t i = 0; i < now.size(); ++i) {
        const QString known = now[i].toLocalFile();
        steps.push_back({known, renaming.hidden()[i].toLocalFile(), known});
    }
    for (std::size_t i = 0; i < now.size(); ++i)
        steps.push_back({steps[i].to, before[i].toLocalFile(), steps[i].known});

    std::vector<Step> done;
    try {
        for (const Step &step : steps) {
            try {
                FileTransfer::move(step.from, step.to, stop);
            } catch (const FileError &error) {
                if (step.from == step.known)
                    throw;
                throw renamed(error, step);
            }
            done.push_back(step);
        }
    } catch (const std::exception &) {
        reverse(done);
        throw;
    }
    for (const QUrl &folder : madeFolders)
        QDir().rmdir(folder.toLocalFile());
}

} // namespace velmo
