#pragma once

#include <QString>
#include <QUrl>

#include <boost/describe.hpp>

#include <optional>

namespace velmo {

/// What there is to say of a file in one line.
struct FileSummary {
    QUrl url;
    QString name;
    QString kind; ///< of the desktop's file types, in the user's language
    std::optional<qint64> byteSize;
    bool isDirectory = false;
    bool exists = false;

    static FileSummary make(const QUrl &url);

    /// "Documento PDF · 1,2 MB", or "Arquivo não encontrado".
    QString detail() const;

    bool operator==(const FileSummary &) const = default;
};
BOOST_DESCRIBE_STRUCT(FileSummary, (), (url, name, kind, byteSize, isDirectory, exists))

} // namespace velmo
