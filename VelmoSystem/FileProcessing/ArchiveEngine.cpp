#include "VelmoSystem/FileProcessing/ArchiveEngine.h"

#include "VelmoCore/Files/NameEncoding.h"

#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>

namespace velmo {
namespace {

/// Stands in for a password, so that 7-Zip fails for a protected archive instead of asking.
const QString passwordProbe = QStringLiteral("\u0001velmo-sem-senha");

/// A password goes in by standard input: arguments are for everyone on the computer to read.
ToolCommand withPassword(ToolCommand command, const std::optional<QString> &password)
{
    command.input = password;
    return command;
}

bool endsWithAny(const QString &name, std::initializer_list<const char *> endings)
{
    return std::ranges::any_of(endings, [&](const char *ending) {
        return name.endsWith(QLatin1String(ending), Qt::CaseInsensitive);
    });
}

/// Measured: ZIP is unpacked in less time by bsdtar, and 7-Zip unpacks a compressed tar in two
/// steps.
bool isQuickerByBsdtar(const QString &name)
{
    return ArchiveEngine::isCompressedTar(name) || endsWithAny(name, {".zip", ".tar", ".cpio"});
}

/// One run for each folder that items are in: Info-ZIP keeps the path that it is given.
std::vector<ToolCommand> infoZip(const QString &archive, const QStringList &items,
                                 std::optional<int> level)
{
    QString tool = QStandardPaths::findExecutable(QStringLiteral("zip"));
    if (tool.isEmpty())
        tool = QStringLiteral("/usr/bin/zip");
    std::vector<ToolCommand> commands;
    for (const QString &item : items) {
        const QFileInfo file(item);
        if (commands.empty() || commands.back().workingFolder != file.path()) {
            commands.push_back({tool,
                                {QStringLiteral("-qry"), archive},
                                std::nullopt,
                                file.path(),
                                QFileInfo(archive).path()});
            if (level)
                commands.back().arguments.prepend(u'-' + QString::number(*level));
        }
        // So that no name is an option.
        commands.back().arguments.append(QStringLiteral("./") + file.fileName());
    }
    return commands;
}

ToolCommand tarGzip(const QString &tool, const QString &archive, const QStringList &items)
{
    QStringList arguments{QStringLiteral("-czf"), archive};
    for (const QString &item : items) {
        const QFileInfo file(item);
        // So that no name is an option or an archive to be taken in.
        arguments << QStringLiteral("-C") << file.path() << QStringLiteral("./") + file.fileName();
    }
    ToolCommand command{tool, arguments};
    command.writableFolder = QFileInfo(archive).path();
    return command;
}

/// The first lines of what a tool says went wrong: it says one for every entry.
QString firstLines(const QString &text)
{
    constexpr int lines = 3;
    return text.trimmed().section(u'\n', 0, lines - 1);
}

/// Says to bsdtar how names are written.
QStringList charset(const QByteArray &codePage)
{
    if (codePage.isEmpty())
        return {};
    return {QStringLiteral("--options"),
            QStringLiteral("zip:hdrcharset=") + QString::fromLatin1(codePage)};
}

} // namespace

ArchiveEngine::ArchiveEngine(Kind kind, QString tool) : m_kind(kind), m_tool(std::move(tool))
{
}

std::optional<ArchiveEngine> ArchiveEngine::find(Kind kind)
{
    QString tool;
    if (kind == Kind::sevenZip) {
        tool = qEnvironmentVariable("VELMO_7ZZ");
        if (!QFileInfo(tool).isFile() || !QFileInfo(tool).isExecutable())
            tool = QStandardPaths::findExecutable(QStringLiteral("7zz"));
    } else {
        tool = QStandardPaths::findExecutable(QStringLiteral("bsdtar"));
    }
    if (tool.isEmpty())
        return std::nullopt;
    return ArchiveEngine(kind, QFileInfo(tool).absoluteFilePath());
}

std::vector<ArchiveEngine> ArchiveEngine::all(const QString &fileName)
{
    std::vector<ArchiveEngine> engines = allThatMake();
    if (isQuickerByBsdtar(fileName))
        std::ranges::reverse(engines);
    return engines;
}

std::vector<ArchiveEngine> ArchiveEngine::allThatMake()
{
    std::vector<ArchiveEngine> engines;
    for (const Kind kind : {Kind::sevenZip, Kind::bsdtar}) {
        if (const auto engine = find(kind))
            engines.push_back(*engine);
    }
    return engines;
}

ToolCommand ArchiveEngine::listing(const Input &input) const
{
    const auto &[archive, password, codePage] = input;
    if (m_kind == Kind::bsdtar)
        return withPassword(
            {m_tool, charset(codePage) + QStringList{QStringLiteral("--numeric-owner"),
                                                     QStringLiteral("-tvf"), archive}},
            password);
    QStringList arguments = {QStringLiteral("l"), QStringLiteral("-slt"), QStringLiteral("-ba"),
                             QStringLiteral("-spd"), QStringLiteral("-sccUTF-8")};
    if (!password)
        arguments.append(QStringLiteral("-p") + passwordProbe);
    return withPassword({m_tool, arguments << archive}, password);
}

ToolCommand ArchiveEngine::extraction(const Input &input, const QString &folder) const
{
    const auto &[archive, password, codePage] = input;
    QStringList arguments;
    if (m_kind == Kind::bsdtar) {
        arguments = charset(codePage) + QStringList{QStringLiteral("-xf"),
                                                    archive,
                                                    QStringLiteral("-C"),
                                                    folder,
                                                    QStringLiteral("--no-same-owner"),
                                                    QStringLiteral("--no-same-permissions")};
    } else {
        // Links are made as they are, after all files, and looked at by us: 7-Zip itself takes
        // "../a" within the archive for dangerous.
        arguments = {QStringLiteral("x"),           archive,
                     QStringLiteral("-o") + folder, QStringLiteral("-y"),
                     QStringLiteral("-spd"),        QStringLiteral("-sccUTF-8"),
                     QStringLiteral("-bsp0"),       QStringLiteral("-snld20")};
        if (!password)
            arguments.append(QStringLiteral("-p") + passwordProbe);
        if (endsWithAny(archive, {".xar"}))
            arguments.append(QStringLiteral("-x![TOC].xml")); // which is none of the user's files
    }
    ToolCommand command{m_tool, arguments};
    command.writableFolder = folder;
    return withPassword(command, password);
}

ToolCommand ArchiveEngine::tarListing(const QString &archive) const
{
    // The shell is there for the pipe alone: names come to it as arguments.
    return {QStringLiteral("/bin/sh"),
            {QStringLiteral("-c"),
             QStringLiteral(R"("$0" x -so -spd "$1" | "$0" l -slt -ba -sccUTF-8 -si -ttar)"),
             m_tool, archive}};
}

std::vector<ToolCommand> ArchiveEngine::compression(const QString &archive,
                                                    const QStringList &items,
                                                    std::optional<int> level,
                                                    ArchiveFormat format) const
{
    if (format == ArchiveFormat::tarGzip)
        return {tarGzip(m_tool, archive, items)};
    if (m_kind == Kind::bsdtar)
        return infoZip(archive, items, level);
    // Its quickest level of ZIP is smaller than the usual one of others, and uses all cores; who
    // asks for 7z wants a small archive.
    const bool isZip = format == ArchiveFormat::zip;
    const int best = isZip ? 1 : 5;
    const QStringList arguments = {QStringLiteral("a"),
                                   isZip ? QStringLiteral("-tzip") : QStringLiteral("-t7z"),
                                   QStringLiteral("-mx") + QString::number(level.value_or(best)),
                                   isZip ? QStringLiteral("-mcu") : QStringLiteral("-mmt"),
                                   QStringLiteral("-snl"),
                                   QStringLiteral("-spd"),
                                   QStringLiteral("-bso0"),
                                   QStringLiteral("-bsp1"),
                                   QStringLiteral("-sccUTF-8"),
                                   archive};
    ToolCommand command{m_tool, arguments + items};
    command.writableFolder = QFileInfo(archive).path();
    return {command};
}

bool ArchiveEngine::makes(ArchiveFormat format) const
{
    switch (format) {
    case ArchiveFormat::zip:
        return true;
    case ArchiveFormat::sevenZip:
        return m_kind == Kind::sevenZip;
    case ArchiveFormat::tarGzip:
        return m_kind == Kind::bsdtar;
    }
    Q_UNREACHABLE();
}

QString ArchiveEngine::suffix(ArchiveFormat format)
{
    switch (format) {
    case ArchiveFormat::zip:
        return QStringLiteral(".zip");
    case ArchiveFormat::sevenZip:
        return QStringLiteral(".7z");
    case ArchiveFormat::tarGzip:
        return QStringLiteral(".tar.gz");
    }
    Q_UNREACHABLE();
}

std::optional<QByteArray> ArchiveEngine::codePage(const ProcessResult &result) const
{
    return NameEncoding::guess(m_kind == Kind::bsdtar
                                   ? ArchiveListing::unescaped(result.standardOutput)
                                   : result.standardOutput);
}

std::vector<ArchiveEntry> ArchiveEngine::entries(const QString &listing) const
{
    return m_kind == Kind::sevenZip ? ArchiveListing::parseTechnicalListing(listing)
                                    : ArchiveListing::parseTarListing(listing);
}

void ArchiveEngine::checkKinds(const QString &listing) const
{
    if (m_kind == Kind::sevenZip)
        ArchiveListing::checkTechnicalKinds(listing);
    else
        ArchiveListing::checkTarKinds(listing);
}

ArchiveError ArchiveEngine::error(const ProcessResult &result, bool passwordGiven) const
{
    if (m_kind == Kind::sevenZip)
        return ArchiveListing::classify7z(QString::fromUtf8(result.standardOutput) + u'\n' +
                                              result.standardError,
                                          result.status, passwordGiven);
    return ArchiveListing::classify(firstLines(result.standardError), passwordGiven);
}

QString ArchiveEngine::compressionFailure(const ProcessResult &result)
{
    const QString reason = firstLines(result.standardError);
    return reason.isEmpty() ? QStringLiteral("A compactação falhou (código %1).").arg(result.status)
                            : reason;
}

bool ArchiveEngine::isCompressedTar(const QString &fileName)
{
    return endsWithAny(fileName, {".tar.gz", ".tar.bz2", ".tar.xz", ".tar.zst", ".tar.lz4",
                                  ".tar.Z", ".tgz", ".tbz", ".tbz2", ".txz", ".tzst"});
}

} // namespace velmo
