#include "VelmoSystem/FileProcessing/FileOperations.h"

#include "VelmoCore/Files/FileNaming.h"
#include "VelmoCore/Files/PendingFiles.h"
#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Foundation/Overloaded.h"

#include <QDir>
#include <QFileInfo>

#include <filesystem>
#include <sys/stat.h>

namespace velmo::FileOperations {

namespace {

namespace fs = std::filesystem;

QString describe(const OperationError::Value &value)
{
    return std::visit(
        overloaded{
            [](const OperationError::InvalidName &error) {
                return QStringLiteral("“%1” não é um nome válido.").arg(error.name);
            },
            [](const OperationError::NameTaken &error) {
                return QStringLiteral("Já existe um item chamado “%1” nesta pasta.")
                    .arg(error.name);
            },
            [](const OperationError::NotUndone &error) {
                QStringList paths;
                for (const QUrl &file : error.files)
                    paths.append(QStringLiteral("“%1”").arg(file.toLocalFile()));
                return QStringLiteral("%1 Não foi possível devolver todos os nomes: ficou em %2.")
                    .arg(error.reason, paths.join(QStringLiteral(", ")));
            },
        },
        value);
}

void heed(const std::stop_token &stop)
{
    if (stop.stop_requested())
        throw Cancelled();
}

QFileInfo itemAt(const QUrl &url)
{
    return QFileInfo(url.adjusted(QUrl::StripTrailingSlash).toLocalFile());
}

QUrl inFolder(const QString &folder, const QString &name)
{
    return QUrl::fromLocalFile(QDir(folder).filePath(name));
}

QUrl beside(const QUrl &url, const QString &name)
{
    return inFolder(itemAt(url).path(), name);
}

/// Renames that can all be taken back, also by a later run.
class Renames {
public:
    /// Those of `targets` that are taken get another name. Throws `FileError` where it can't be
    /// recorded.
    Renames(const std::vector<QUrl> &urls, const std::vector<QUrl> &targets)
        : m_first(urls), m_now(urls), m_renaming(urls, targets)
    {
    }

    const std::vector<QUrl> &now() const { return m_now; }

    void hide(std::size_t index) { move(index, m_renaming.hidden()[index]); }

    /// As `FileTransfer::moveUnique`, of the item number `index`.
    void moveUnique(std::size_t index, const QUrl &to)
    {
        apply(index, [&](const QUrl &from) { return FileTransfer::moveUnique(from, to); });
    }

    void move(std::size_t index, const QUrl &to)
    {
        apply(index, [&](const QUrl &from) {
            FileTransfer::move(from.toLocalFile(), to.toLocalFile());
            return to;
        });
    }

    /// Gives the items their first names, the last one renamed first. Throws `OperationError` with
    /// `reason` where one can't have it.
    void undo(const QString &reason)
    {
        for (; !m_steps.empty(); m_steps.pop_back())
            undoStep(m_steps.back());
        OperationError::NotUndone left{.reason = reason, .files = {}};
        for (std::size_t index = 0; index < m_now.size(); ++index) {
            if (m_now[index] != m_first[index])
                left.files.push_back(m_now[index]);
        }
        if (!left.files.empty())
            throw OperationError(left);
    }

private:
    struct Step {
        std::size_t index;
        QUrl from;
        QUrl to;
    };

    /// A failure names the item as its user knows it.
    void apply(std::size_t index, const std::function<QUrl(const QUrl &)> &transfer)
    {
        const QUrl from = m_now[index];
        try {
            m_now[index] = transfer(from);
        } catch (const FileError &error) {
            throw FileError(m_first[index].toLocalFile(), error.code());
        }
        m_steps.push_back({index, from, m_now[index]});
    }

    /// What is taken by now, or not to be had, leaves the item where it is or close to it.
    void undoStep(const Step &step)
    {
        if (m_now[step.index] != step.to)
            return;
        try {
            m_now[step.index] = FileTransfer::moveUnique(step.to, step.from);
        } catch (const FileError &error) {
            qCWarning(Log::storage).noquote()
                << QStringLiteral("Não foi possível devolver %1: %2")
                       .arg(m_first[step.index].toLocalFile(), error.description());
        }
    }

    const std::vector<QUrl> m_first;
    std::vector<QUrl> m_now;
    PendingFiles::Renaming m_renaming;
    std::vector<Step> m_steps;
};

bool isSameFile(const QUrl &one, const QUrl &other)
{
    struct stat first = {};
    struct stat second = {};
    return ::lstat(QFile::encodeName(one.toLocalFile()).constData(), &first) == 0 &&
           ::lstat(QFile::encodeName(other.toLocalFile()).constData(), &second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

/// Where names that differ only in case are the same file, a name in between is needed.
void changeCase(const QUrl &url, const QUrl &target)
{
    if (!isSameFile(url, target))
        return FileTransfer::move(url.toLocalFile(), target.toLocalFile());
    Renames renames({url}, {target});
    try {
        renames.hide(0);
        renames.move(0, target);
    } catch (const FileError &error) {
        renames.undo(error.description());
        throw;
    }
}

void checkNames(const std::vector<QString> &names)
{
    for (const QString &name : names) {
        if (!FileNaming::isValid(name))
            throw OperationError(OperationError::InvalidName{name});
    }
}

QString folderFor(const QFileInfo &file)
{
    const QString name = file.fileName();
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot > 0 && dot + 1 < name.size() ? name.mid(dot + 1).toUpper()
                                            : QStringLiteral("Sem extensão");
}

QUrl moveIntoNewFolder(const QUrl &url, const std::stop_token &stop)
{
    const QFileInfo file = itemAt(url);
    const QString folder = QDir(file.path()).filePath(folderFor(file));
    const fs::path native(QFile::encodeName(folder).toStdString());
    std::error_code error;
    const bool isNew = fs::create_directory(native, error);
    if (error)
        throw FileError(folder, error.value());
    try {
        return FileTransfer::moveUnique(url, inFolder(folder, file.fileName()), stop);
    } catch (const LocalizedError &) {
        if (isNew)
            fs::remove(native, error); // does nothing unless it is empty
        throw;
    }
}

} // namespace

OperationError::OperationError(const Value &value) : LocalizedError(describe(value)), m_value(value)
{
}

QUrl rename(const QUrl &url, const QString &name)
{
    checkNames({name});
    PendingFiles::restoreBeside({url});
    const QString path = itemAt(url).filePath();
    const QUrl target = beside(url, name);
    if (target.toLocalFile() == path)
        return url;
    const bool isCaseOnly = target.toLocalFile().compare(path, Qt::CaseInsensitive) == 0;
    if (!isCaseOnly && FileNaming::exists(target))
        throw OperationError(OperationError::NameTaken{name});
    try {
        if (isCaseOnly)
            changeCase(url, target);
        else
            FileTransfer::move(path, target.toLocalFile());
    } catch (const FileError &error) {
        if (error.code() == EEXIST)
            throw OperationError(OperationError::NameTaken{name});
        throw;
    }
    return target;
}

std::vector<QUrl> batchRename(const std::vector<QUrl> &urls, const QString &pattern, int start,
                              Date date, const Progress &progress, std::stop_token stop)
{
    const std::vector<QString> names = FileNaming::batchNames(urls, pattern, start, date);
    checkNames(names);
    PendingFiles::restoreBeside(urls);
    std::vector<QUrl> targets;
    for (std::size_t index = 0; index < urls.size(); ++index)
        targets.push_back(beside(urls[index], names[index]));
    Renames renames(urls, targets);
    try {
        for (std::size_t index = 0; index < urls.size(); ++index) {
            heed(stop);
            renames.hide(index);
        }
        for (std::size_t index = 0; index < urls.size(); ++index) {
            heed(stop);
            renames.moveUnique(index, targets[index]);
            progress(double(index + 1) / double(urls.size()));
        }
    } catch (const FileError &error) {
        renames.undo(error.description());
        throw FileError(error, QStringLiteral("Todos os itens têm os nomes de antes."));
    } catch (const std::exception &error) {
        renames.undo(QString::fromUtf8(error.what()));
        throw;
    }
    return renames.now();
}

std::vector<QUrl> duplicate(const std::vector<QUrl> &urls, std::stop_token stop)
{
    std::vector<QUrl> copies;
    for (const QUrl &url : urls) {
        const QUrl copy = FileNaming::output(url, std::nullopt, QStringLiteral("cópia"));
        copies.push_back(FileTransfer::copyUnique(url, copy, stop));
    }
    return copies;
}

std::vector<QUrl> move(const std::vector<QUrl> &urls, const QUrl &folder, std::stop_token stop)
{
    std::vector<QUrl> moved;
    for (const QUrl &url : urls) {
        const QUrl target = inFolder(itemAt(folder).filePath(), itemAt(url).fileName());
        moved.push_back(FileTransfer::moveUnique(url, target, stop));
    }
    return moved;
}

std::vector<QUrl> organizeByExtension(const std::vector<QUrl> &urls, const Progress &progress,
                                      std::stop_token stop)
{
    std::vector<QUrl> moved;
    for (std::size_t index = 0; index < urls.size(); ++index) {
        heed(stop);
        progress(double(index) / double(urls.size()));
        if (!itemAt(urls[index]).isDir())
            moved.push_back(moveIntoNewFolder(urls[index], stop));
    }
    return moved;
}

} // namespace velmo::FileOperations
