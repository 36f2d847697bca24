#pragma once

#include "VelmoCore/Storage/AtomicFile.h"

#include <QStringList>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

namespace velmo {

/// A command-line program to run.
struct ToolCommand {
    QString tool; ///< absolute path
    QStringList arguments;
    std::optional<QString> input; ///< a line for standard input, such as a password
    std::optional<QString> workingFolder;
    std::optional<QString> writableFolder; ///< beneath it only may it write, where the system can
                                           ///< hold it to that
};

struct ProcessResult {
    int status = 0;            ///< 128 and the signal's number for a program that was killed
    QByteArray standardOutput; ///< as it was written, whatever the names in it are
    QString standardError;     ///< its first mebibyte
};

/// A running program with what it started. It ends when this does, or Orvane. Not for the main
/// thread: starting and ending take their time. To be used by the thread that made it.
class ToolProcess {
public:
    /// Throws `FileError` if it can't be started, or held to its writable folder by a system that
    /// does so.
    explicit ToolProcess(const ToolCommand &command);
    /// Ends it and all that it started: asks first, and kills what doesn't heed.
    ~ToolProcess();

    /// Whether the system holds programs to their writable folder.
    static bool canConfine();

    /// Halts it and all that it started, or lets them go on.
    void halt(bool isHalted);

    /// Reads what it writes until it has ended or the time is up. Whether it has ended.
    bool waitFor(std::chrono::milliseconds time);
    /// Of a program that has ended.
    ProcessResult result() const;
    /// All that it wrote to its standard output so far.
    const QByteArray &output() const;

    /// Runs it to its end, calling `tick` four times a second. What `tick` throws ends the
    /// program, as `stop` does with `Cancelled`.
    static ProcessResult run(
        const ToolCommand &command, const std::stop_token &stop = {},
        const std::function<void(const ToolProcess &)> &tick = [](const ToolProcess &) {});

private:
    struct Process;
    std::unique_ptr<Process> m_process;
};

} // namespace velmo
