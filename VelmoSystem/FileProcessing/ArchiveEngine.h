#pragma once

#include "VelmoCore/Files/ArchiveListing.h"
#include "VelmoSystem/Ports/ToolProcess.h"

#include <optional>
#include <vector>

namespace velmo {

/// What kind of archive is to be made.
enum class ArchiveFormat { zip, sevenZip, tarGzip };

/// One of the two programs that archives are read and made by: how it is called, and what it says.
class ArchiveEngine {
public:
    enum class Kind { sevenZip, bsdtar };

    struct Input {
        QString archive;
        std::optional<QString> password;
        QByteArray codePage = {}; ///< of names that aren't UTF-8
    };

    /// Nothing where the program isn't installed. 7-Zip is that of `VELMO_7ZZ`, else "7zz" on the
    /// path.
    static std::optional<ArchiveEngine> find(Kind kind);
    /// Those that are installed, the quicker one to unpack archives of that name first.
    static std::vector<ArchiveEngine> all(const QString &fileName);
    /// The quicker one to make archives first.
    static std::vector<ArchiveEngine> allThatMake();

    Kind kind() const { return m_kind; }
    const QString &tool() const { return m_tool; }

    ToolCommand listing(const Input &input) const;
    ToolCommand extraction(const Input &input, const QString &folder) const;
    /// Lists the tar that a compressed one holds, without writing it anywhere; no entry where it
    /// holds none. Only for 7-Zip.
    ToolCommand tarListing(const QString &archive) const;
    /// To be run in turn: an archive of `items`, absolute paths with names of their own. Links in
    /// them are kept. Without 7-Zip it is Info-ZIP that makes a ZIP. `level` is 1 to 9, else the
    /// one that serves best. Only in a format that it `makes`.
    std::vector<ToolCommand> compression(const QString &archive, const QStringList &items,
                                         std::optional<int> level = std::nullopt,
                                         ArchiveFormat format = ArchiveFormat::zip) const;
    bool makes(ArchiveFormat format) const;
    /// ".zip", ".7z", ".tar.gz"
    static QString suffix(ArchiveFormat format);

    /// Whether it refuses by itself to unpack through a link or by a path that leads out.
    bool isCareful() const { return m_kind == Kind::bsdtar; }

    /// The code page of the names that were listed, where it isn't UTF-8.
    std::optional<QByteArray> codePage(const ProcessResult &result) const;
    std::vector<ArchiveEntry> entries(const QString &listing) const;
    /// Throws `UnsafeEntry` for a kind of entry that isn't unpacked.
    void checkKinds(const QString &listing) const;
    ArchiveError error(const ProcessResult &result, bool passwordGiven) const;
    static QString compressionFailure(const ProcessResult &result);

    /// Whether archives of that name take as long to list as to unpack.
    static bool isCompressedTar(const QString &fileName);

private:
    ArchiveEngine(Kind kind, QString tool);

    Kind m_kind;
    QString m_tool;
};

} // namespace velmo
