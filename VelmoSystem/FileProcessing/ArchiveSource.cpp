#include "VelmoSystem/FileProcessing/ArchiveSource.h"

#include "VelmoCore/Files/NameEncoding.h"
#include "VelmoCore/Storage/AtomicFile.h"

#include <QFileInfo>

#include <algorithm>
#include <array>

namespace velmo {
namespace {

using namespace std::chrono_literals;

/// Refuses a listing that is too large as soon as it says so: that of a compressed tar takes as
/// long as unpacking it.
class SizeWatch {
public:
    SizeWatch(const ArchiveEngine &engine, std::optional<qint64> sizeLimit)
        : m_engine(engine), m_sizeLimit(sizeLimit)
    {
    }

    void look(const QByteArray &output)
    {
        constexpr qsizetype longest = 512 << 20; // it is held in memory
        if (output.size() > longest)
            throw ArchiveError(ArchiveError::Unsupported{
                QStringLiteral("o arquivo compactado tem itens demais.")});
        if (!m_sizeLimit)
            return;
        const char *ending = m_engine.kind() == ArchiveEngine::Kind::bsdtar ? "\n" : "\n\n";
        const qsizetype end = std::max(output.lastIndexOf(ending) + 1, m_seen);
        m_sum += sizes(output.mid(m_seen, end - m_seen));
        m_seen = end;
        // The last entry is reported before it is read, which may be what takes long.
        sizes(output.mid(end));
    }

private:
    qint64 sizes(const QByteArray &part) const
    {
        std::vector<ArchiveEntry> entries = m_engine.entries(QString::fromUtf8(part));
        entries.push_back({{}, m_sum, false});
        return ArchiveListing::checkSizes(entries, *m_sizeLimit) - m_sum;
    }

    const ArchiveEngine &m_engine;
    std::optional<qint64> m_sizeLimit;
    qint64 m_sum = 0;
    qsizetype m_seen = 0;
};

ProcessResult listed(const ArchiveEngine &engine, const ToolCommand &command,
                     const std::stop_token &stop, std::optional<qint64> sizeLimit)
{
    SizeWatch watch(engine, sizeLimit);
    return ToolProcess::run(command, stop,
                            [&](const ToolProcess &process) { watch.look(process.output()); });
}

bool begins(const QString &file, const QByteArray &bytes)
{
    return AtomicFile::read(file, bytes.size()) == bytes;
}

/// Compressed by a program that knows one file only.
bool isStream(const QString &file)
{
    static const std::array<QByteArray, 7> starts = {"\x1f\x8b",
                                                     "\x1f\x9d",
                                                     "BZh",
                                                     "\xfd"
                                                     "7zXZ",
                                                     "\x28\xb5\x2f\xfd",
                                                     "LZIP",
                                                     QByteArray("\x5d\0\0", 3)};
    return std::ranges::any_of(starts,
                               [&](const QByteArray &start) { return begins(file, start); });
}

} // namespace

ProcessResult ArchiveSource::list(const std::stop_token &stop,
                                  std::optional<qint64> sizeLimit) const
{
    ProcessResult result = listed(engine, engine.listing(input), stop, sizeLimit);
    succeed(result);
    return result;
}

const ArchiveSource::Listing &ArchiveSource::listing(const std::stop_token &stop,
                                                     std::optional<qint64> sizeLimit)
{
    if (known)
        return *known;
    ProcessResult result = list(stop, sizeLimit);
    if (input.codePage.isEmpty() && begins(input.archive, "PK")) {
        input.codePage = engine.codePage(result).value_or(QByteArray());
        if (!input.codePage.isEmpty() && engine.kind() == ArchiveEngine::Kind::bsdtar)
            result = list(stop, sizeLimit);
    }
    Listing listing;
    listing.text = NameEncoding::decoded(result.standardOutput, input.codePage);
    listing.entries = engine.entries(listing.text);
    return known.emplace(std::move(listing));
}

qint64 ArchiveSource::check(qint64 sizeLimit, const std::stop_token &stop)
{
    const Listing &all = listing(stop, sizeLimit);
    ArchiveListing::check(all.entries, sizeLimit);
    engine.checkKinds(all.text);
    return ArchiveListing::checkSizes(all.entries, sizeLimit);
}

bool ArchiveSource::holdsTar(qint64 sizeLimit, const std::stop_token &stop) const
{
    if (engine.kind() == ArchiveEngine::Kind::bsdtar || !isStream(input.archive))
        return false;
    // What is wrong with it, unpacking it shows.
    const ProcessResult result = listed(engine, engine.tarListing(input.archive), stop, sizeLimit);
    const auto entries = engine.entries(QString::fromUtf8(result.standardOutput));
    ArchiveListing::checkSizes(entries, sizeLimit);
    return !entries.empty() || ArchiveEngine::isCompressedTar(input.archive);
}

void ArchiveSource::succeed(const ProcessResult &result) const
{
    if (result.status != 0)
        throw engine.error(result, input.password.has_value());
}

ArchiveCheck::ArchiveCheck(ArchiveSource source, qint64 sizeLimit)
    : m_sum(std::async(std::launch::async, [source = std::move(source), sizeLimit,
                                            stop = m_stop.get_token()]() mutable {
          return source.check(sizeLimit, stop);
      }))
{
}

std::optional<qint64> ArchiveCheck::poll()
{
    if (m_sum.valid() && m_sum.wait_for(0s) == std::future_status::ready)
        m_known = m_sum.get();
    return m_known;
}

void ArchiveCheck::wait(const std::stop_token &stop)
{
    const std::stop_callback forward(stop, [this] { m_stop.request_stop(); });
    if (m_sum.valid())
        m_known = m_sum.get();
}

} // namespace velmo
