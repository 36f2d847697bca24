#pragma once

#include "VelmoCore/Foundation/Date.h"
#include "VelmoCore/Foundation/Json.h"
#include "VelmoCore/Storage/ProtectedFile.h"

#include <functional>
#include <variant>

namespace velmo {

/// What became of a load, apart from the record itself.
namespace LoadIssue {

/// The sentence for a file that was set aside; `quarantinedAt` is its new path.
QString recovered(const QString &label, const std::optional<QString> &quarantinedAt);
QString locked(const QString &label);

} // namespace LoadIssue

/// The result of loading one root record.
template <class Root>
struct LoadResult {
    struct Loaded {
        Root value;
    };
    /// The file was unreadable and has been set aside; the store starts empty.
    struct Recovered {
        std::optional<QString> quarantinedAt;
    };
    struct Missing {};
    /// The file is sealed and can't be opened; nothing was changed.
    struct Locked {};

    std::variant<Loaded, Recovered, Missing, Locked> outcome;

    /// The root record of `Loaded`, otherwise nothing.
    std::optional<Root> value() const;
    /// The sentence to show the user, nothing for `Loaded` and `Missing`.
    std::optional<QString> issue(const QString &label) const;
};

/// The part of a store that doesn't depend on its record.
class JSONFile {
public:
    JSONFile(const QString &path, const std::optional<DataCipher> &cipher);

    const QString &path() const { return m_path; }

    /// Throws as `ProtectedFile::write` does.
    void write(const QByteArray &text) const;

    enum class Failure { missing, locked, recovered };
    struct ReadResult {
        std::optional<Failure> failure;
        std::optional<QString> quarantinedAt;
    };
    /// Reads the text and hands it to `decode`, which throws where it isn't the record, and gives
    /// the record's text again. A plain file is sealed when a cipher is at hand.
    ReadResult read(Date now, const std::function<void(const QByteArray &)> &decode,
                    const std::function<QByteArray()> &encode) const;

    /// The sentence for a failed save; nothing where a `ProtectedFileError` repeats the
    /// `loadIssue`.
    static std::optional<QString> saveIssue(const std::exception &error, const QString &label,
                                            const std::optional<QString> &loadIssue);

private:
    /// A failure costs nothing but the sealing: the next load tries again.
    void sealPlainFile(const std::function<QByteArray()> &encode) const;

    QString m_path;
    ProtectedFile m_file;
};

/// A typed store of one root record in one file, sealed when it has a cipher.
template <class Root>
class JSONFileStore : public JSONFile {
public:
    using JSONFile::JSONFile;

    /// Never fails; `now` names the quarantine file. Main thread or not, one at a time a file.
    LoadResult<Root> load(Date now) const;
    /// Throws `FileError`, `ProtectedFile::ProtectedFileError`.
    void save(const Root &value) const { write(Json::encode(value)); }
};

template <class Root>
std::optional<Root> LoadResult<Root>::value() const
{
    const auto *loaded = std::get_if<Loaded>(&outcome);
    return loaded ? std::optional(loaded->value) : std::nullopt;
}

template <class Root>
std::optional<QString> LoadResult<Root>::issue(const QString &label) const
{
    if (const auto *recovered = std::get_if<Recovered>(&outcome))
        return LoadIssue::recovered(label, recovered->quarantinedAt);
    if (std::holds_alternative<Locked>(outcome))
        return LoadIssue::locked(label);
    return std::nullopt;
}

template <class Root>
LoadResult<Root> JSONFileStore<Root>::load(Date now) const
{
    using Result = LoadResult<Root>;
    std::optional<Root> value;
    const ReadResult result = read(
        now, [&](const QByteArray &text) { value = Json::decode<Root>(text); },
        [&] { return Json::encode(*value); });
    if (!result.failure)
        return {typename Result::Loaded{std::move(*value)}};
    switch (*result.failure) {
    case Failure::missing:
        return {typename Result::Missing{}};
    case Failure::locked:
        return {typename Result::Locked{}};
    case Failure::recovered:
        return {typename Result::Recovered{result.quarantinedAt}};
    }
    Q_UNREACHABLE();
}

} // namespace velmo
