#include "VelmoSystem/FileProcessing/MovedFiles.h"

#include "VelmoCore/Files/FileTransfer.h"
#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Foundation/Uuid.h"

#include <QDir>

#include <algorithm>

namespace velmo {

namespace {

struct Step {
    QString from;
    QString to;
};

/// A name that nothing else has, in the same folder.
QString aside(const QUrl &url)
{
    return url.adjusted(QUrl::RemoveFilename).toLocalFile() +
           QStringLiteral(".velmo-rename-%1").arg(uuidText(makeUuid()));
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
    std::vector<Step> steps;
    for (const QUrl &url : now)
        steps.push_back({url.toLocalFile(), aside(url)});
    for (std::size_t i = 0; i < now.size(); ++i)
        steps.push_back({steps[i].to, before[i].toLocalFile()});

    std::vector<Step> done;
    try {
        for (const Step &step : steps) {
            FileTransfer::move(step.from, step.to, stop);
            done.push_back(step);
        }
    } catch (const LocalizedError &) {
        reverse(done);
        throw;
    }
    for (const QUrl &folder : madeFolders)
        QDir().rmdir(folder.toLocalFile());
}

} // namespace velmo
