#include "VelmoUI/Modules/Tools/RenamePreview.h"

#include "VelmoCore/Foundation/Words.h"

#include <algorithm>
#include <set>

namespace velmo {

RenamePreview RenamePreview::make(const std::vector<QUrl> &urls, const QString &pattern, int start,
                                  Date date, const FileNaming::Exists &exists)
{
    const auto names = FileNaming::batchNames(urls, pattern, start, date);
    const std::set<QUrl> sources(urls.begin(), urls.end());
    std::set<QUrl> wanted;
    std::set<QUrl> given;
    // All files leave their names before the first one gets its new name.
    const auto isTaken = [&](const QUrl &url) {
        return given.contains(url) || (!sources.contains(url) && exists(url));
    };

    RenamePreview preview;
    for (std::size_t i = 0; i < urls.size(); ++i) {
        const QUrl folder = urls[i].adjusted(QUrl::RemoveFilename);
        RenameRow row{.id = urls[i].toLocalFile(), .before = urls[i].fileName(), .after = names[i]};
        if (!FileNaming::isValid(names[i])) {
            row.problem = QStringLiteral("Nome inválido");
            row.isError = true;
        } else {
            const QUrl target = QUrl::fromLocalFile(folder.toLocalFile() + names[i]);
            if (!wanted.insert(target).second)
                row.problem = QStringLiteral("Nome repetido");
            else if (isTaken(target))
                row.problem = QStringLiteral("Nome em uso");
            const QUrl unique = FileNaming::uniqueURL(target, isTaken);
            given.insert(unique);
            row.after = unique.fileName();
        }
        row.detail = row.problem.isEmpty() ? row.before
                                           : QStringLiteral("%1 · %2").arg(row.problem, row.before);
        row.spoken = QStringLiteral("%1 vira %2").arg(row.before, row.after);
        if (!row.problem.isEmpty())
            row.spoken += QStringLiteral(", ") + row.problem;
        preview.changedCount += row.after != row.before;
        preview.invalidCount += row.isError;
        preview.problemCount += !row.problem.isEmpty();
        preview.rows.push_back(row);
    }
    return preview;
}

QString RenamePreview::summary() const
{
    if (invalidCount > 0)
        return Words::count(invalidCount, u"1 nome inválido", u"%1 nomes inválidos");
    const QString text = changedCount == 0
                             ? QStringLiteral("Nenhum nome muda")
                             : Words::count(changedCount, u"1 nome muda", u"%1 nomes mudam");
    return problemCount == 0
               ? text
               : QStringLiteral("%1 · %2 com aviso").arg(text, Words::number(problemCount));
}

} // namespace velmo
