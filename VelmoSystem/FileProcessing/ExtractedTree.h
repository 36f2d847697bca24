#pragma once

#include <QString>

/// What an archive's tool left in a folder, made fit for the user. All throw `FileError`.
namespace velmo::ExtractedTree {

struct Contents {
    qint64 size = 0; ///< bytes that the files take on disk
    bool hasLinks = false;
};

/// Removes what is neither file, folder nor link, and files that are linked from elsewhere. Opens
/// all folders and files to the user, takes set-id bits away, and repairs names that hold control
/// characters or aren't UTF-8: these are of `codePage`, if there is one.
Contents makeOrdinary(const QString &folder, const QByteArray &codePage = {});

/// Removes the links that lead out of `folder` or would once it is moved, absolute ones among them.
void removeEscapingLinks(const QString &folder);

/// With all that is in it, also where its folders are closed even to their owner.
void remove(const QString &folder);

} // namespace velmo::ExtractedTree
