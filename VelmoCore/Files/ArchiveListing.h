#pragma once

#include "VelmoCore/Foundation/LocalizedError.h"

#include <QByteArray>
#include <QString>

#include <boost/describe.hpp>

#include <variant>
#include <vector>

namespace velmo {

/// One entry of an archive, as its listing claims it to be.
struct ArchiveEntry {
    QString path;
    qint64 size = 0;
    bool isDirectory = false;

    bool operator==(const ArchiveEntry &) const = default;
};
BOOST_DESCRIBE_STRUCT(ArchiveEntry, (), (path, size, isDirectory))

/// Why an archive could not be read or made.
class ArchiveError : public LocalizedError {
public:
    struct Unsupported {
        QString text;
        bool operator==(const Unsupported &) const = default;
    };
    struct Failed {
        QString text;
        bool operator==(const Failed &) const = default;
    };
    struct TooLarge {
        qint64 limit = 0; ///< bytes
        bool operator==(const TooLarge &) const = default;
    };
    struct UnsafeEntry {
        QString path;
        bool operator==(const UnsafeEntry &) const = default;
    };
    struct PasswordRequired {
        bool operator==(const PasswordRequired &) const = default;
    };
    struct WrongPassword {
        bool operator==(const WrongPassword &) const = default;
    };
    using Value =
        std::variant<Unsupported, Failed, TooLarge, UnsafeEntry, PasswordRequired, WrongPassword>;

    explicit ArchiveError(const Value &value);

    const Value &value() const { return m_value; }

private:
    Value m_value;
};

/// What the archive tools print, read. Foreign text: whatever it holds gives entries or none.
namespace ArchiveListing {

/// Of `7zz l -slt -ba`.
std::vector<ArchiveEntry> parseTechnicalListing(const QString &text);
/// Of `bsdtar --numeric-owner -tvf`: the names of owners may hold spaces, which divide the fields.
std::vector<ArchiveEntry> parseTarListing(const QString &text);

/// What bsdtar lists, with the bytes back that it prints as "\207" because they aren't UTF-8.
QByteArray unescaped(const QByteArray &text);

/// Of a file that is no archive.
ArchiveError unrecognized();
/// What 7-Zip's failure means.
ArchiveError classify7z(const QString &text, int status, bool passwordGiven);
/// What bsdtar's failure means.
ArchiveError classify(const QString &text, bool passwordGiven);

/// The archive's name without its extension, ".tar.gz" and the like being one.
QString baseName(const QString &fileName);

/// Throws `UnsafeEntry` for an absolute path, one with a component ".." and one beneath an entry
/// that is no folder, such as a link made earlier; `TooLarge` if the listed sizes are more than
/// `sizeLimit` together.
void check(const std::vector<ArchiveEntry> &entries, qint64 sizeLimit);
/// Of that the sizes alone. Gives their sum.
qint64 checkSizes(const std::vector<ArchiveEntry> &entries, qint64 sizeLimit);

/// What a listing of the same two kinds says about links and devices. Throws `UnsafeEntry` for a
/// device, a pipe or a socket, and for a hard link that points out of the archive.
void checkTechnicalKinds(const QString &text);
void checkTarKinds(const QString &text);

} // namespace ArchiveListing
} // namespace velmo
