#include "VelmoSystem/FileProcessing/ArchiveEngine.h"

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

bool isCompressedTar(const QString &name)
{
    return endsWithAny(name, {".tar.gz", ".tar.bz2", ".tar.xz", ".tar.zst", ".tar.lz4", ".tar.Z",
                              ".tgz", ".tbz", ".tbz2", ".txz", ".tzst"});
}

/// Measured: ZIP is unpacked in less time by bsdtar, and 7-Zip unpacks a compressed tar in two
/// steps.
bool isQuickerByBsdtar(const QString &name)
{
    return isCompressedTar(name) || endsWithAny(name, {".zip", ".tar", ".cpio"});
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

/// The first lines of what a tool says went wrong: it says one for every entry.
QString firstLines(const QString &text)
{
    constexpr int told = 3;
    return text.trimmed().section(u'\n', 0, told - 1);
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

ToolCommand ArchiveEngine::listing(const QString &archive,
                                   const std::optional<QString> &password) const
{
    if (m_kind == Kind::bsdtar)
        return withPassword({m_tool, {QStringLiteral("-tvf"), archive}}, password);
    QStringList arguments = {QStringLiteral("l"), QStringLiteral("-slt"), QStringLiteral("-ba"),
                             QStringLiteral("-spd"), QStringLiteral("-sccUTF-8")};
    if (!password)
        arguments.append(QStringLiteral("-p") + passwordProbe);
    return withPassword({m_tool, arguments << archive}, password);
}

ToolCommand ArchiveEngine::extraction(const QString &archive, const QString &folder,
                                      const std::optional<QString> &password) const
{
    QStringList arguments;
    if (m_kind == Kind::bsdtar) {
        arguments = {QStringLiteral("-xf"),
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
    }
    ToolCommand command{m_tool, arguments};
    command.writableFolder = folder;
    return withPassword(command, password);
}

std::vector<ToolCommand> ArchiveEngine::compression(const QString &archive,
                                                    const QStringList &items,
                                                    std::optional<int> level) const
{
    if (m_kind == Kind::bsdtar)
        return infoZip(archive, items, level);
    // Its quickest level is smaller than the usual one of others, and uses all cores.
    constexpr int quickest = 1;
    const QStringList arguments = {QStringLiteral("a"),
                                   QStringLiteral("-tzip"),
                                   QStringLiteral("-mx") +
                                       QString::number(level.value_or(quickest)),
                                   QStringLiteral("-mcu"),
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

std::vector<ArchiveEntry> ArchiveEngine::entries(const ProcessResult &result) const
{
    return m_kind == Kind::sevenZip ? ArchiveListing::parseTechnicalListing(result.standardOutput)
                                    : ArchiveListing::parseTarListing(result.standardOutput);
}

void ArchiveEngine::checkKinds(const ProcessResult &result) const
{
    if (m_kind == Kind::sevenZip)
        ArchiveListing::checkTechnicalKinds(result.standardOutput);
    else
        ArchiveListing::checkTarKinds(result.standardOutput);
}

ArchiveError ArchiveEngine::error(const ProcessResult &result, bool passwordGiven) const
{
    if (m_kind == Kind::sevenZip)
        return ArchiveListing::classify7z(result.standardOutput + u'\n' + result.standardError,
                                          result.status, passwordGiven);
    return ArchiveListing::classify(firstLines(result.standardError), passwordGiven);
}

QString ArchiveEngine::compressionFailure(const ProcessResult &result)
{
    const QString told = firstLines(result.standardError);
    return told.isEmpty() ? QStringLiteral("A compactação falhou (código %1).").arg(result.status)
                          : told;
}

} // namespace velmo
