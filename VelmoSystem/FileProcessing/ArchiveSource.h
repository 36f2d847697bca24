#pragma once

#include "VelmoSystem/FileProcessing/ArchiveEngine.h"

#include <future>
#include <optional>
#include <stop_token>
#include <vector>

namespace velmo {

/// An archive that is being read by one engine.
struct ArchiveSource {
    struct Listing {
        std::vector<ArchiveEntry> entries;
        QString text;
    };

    ArchiveEngine engine;
    ArchiveEngine::Input input;
    std::optional<Listing> known = std::nullopt;

    /// Throws `ArchiveError`: `TooLarge` as soon as what has been listed is larger than
    /// `sizeLimit`.
    const Listing &listing(const std::stop_token &stop, std::optional<qint64> sizeLimit = {});
    /// Gives the sum of the listed sizes. Throws for what isn't unpacked.
    qint64 check(qint64 sizeLimit, const std::stop_token &stop);
    /// Whether it is a compressed file of nothing but a tar, which 7-Zip doesn't look into. Throws
    /// `TooLarge` where the tar says that it is.
    bool holdsTar(qint64 sizeLimit, const std::stop_token &stop) const;
    /// Throws what made the tool fail.
    void succeed(const ProcessResult &result) const;

private:
    ProcessResult list(const std::stop_token &stop, std::optional<qint64> sizeLimit) const;
};

/// Lists and checks on a thread of its own, which ends with it.
class ArchiveCheck {
public:
    ArchiveCheck(ArchiveSource source, qint64 sizeLimit);
    ~ArchiveCheck() { m_stop.request_stop(); }

    /// The sum of all sizes once it is known; throws what the check throws.
    std::optional<qint64> poll();
    void wait(const std::stop_token &stop);

private:
    std::stop_source m_stop;
    std::future<qint64> m_sum;
    std::optional<qint64> m_known;
};

} // namespace velmo
