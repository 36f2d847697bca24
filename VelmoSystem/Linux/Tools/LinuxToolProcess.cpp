#include "VelmoCore/Foundation/Cancelled.h"
#include "VelmoSystem/Linux/Tools/WriteFence.h"
#include "VelmoSystem/Ports/ToolProcess.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <linux/close_range.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/timerfd.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace velmo {
namespace {

using namespace std::chrono_literals;

constexpr auto tickInterval = 250ms;
constexpr auto patience = 500ms; // of a program that was asked to end
constexpr qsizetype errorLimit = 1 << 20;
constexpr int pipeSize = 1 << 20;
constexpr auto collectingTime = 5ms; // in which a pipe of that size doesn't fill up
constexpr int notStarted = 127;

class Handle {
public:
    explicit Handle(int fd = -1) : m_fd(fd) {}
    Handle(Handle &&other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}
    Handle &operator=(Handle &&other) noexcept
    {
        std::swap(m_fd, other.m_fd);
        return *this;
    }
    ~Handle() { close(); }

    void close()
    {
        if (m_fd >= 0)
            ::close(std::exchange(m_fd, -1));
    }
    int get() const { return m_fd; }

private:
    int m_fd;
};

struct Pipe {
    explicit Pipe(const QString &tool)
    {
        std::array<int, 2> ends = {};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0)
            throw FileError(tool, errno);
        readEnd = Handle(ends[0]);
        writeEnd = Handle(ends[1]);
    }

    Handle readEnd;
    Handle writeEnd;
};

/// Drains one pipe of the program.
class PipeCollector {
public:
    PipeCollector(Handle pipe, qsizetype limit) : m_pipe(std::move(pipe)), m_limit(limit)
    {
        ::fcntl(m_pipe.get(), F_SETFL, O_NONBLOCK);
        m_isLarge = ::fcntl(m_pipe.get(), F_SETPIPE_SZ, pipeSize) >= pipeSize;
    }

    int descriptor() const { return m_pipe.get(); }
    bool isLarge() const { return m_isLarge; }
    const QByteArray &data() const { return m_data; }

    /// What is there now, without waiting.
    void read()
    {
        std::array<char, 1 << 16> buffer;
        while (m_pipe.get() >= 0) {
            const ssize_t count = ::read(m_pipe.get(), buffer.data(), buffer.size());
            if (count > 0)
                m_data.append(buffer.data(), std::min<qsizetype>(count, m_limit - m_data.size()));
            else if (count == 0 || (errno != EAGAIN && errno != EINTR))
                m_pipe.close();
            else if (errno == EAGAIN)
                return;
        }
    }

private:
    Handle m_pipe;
    bool m_isLarge = false;
    qsizetype m_limit;
    QByteArray m_data;
};

/// A standard input that holds that line, or nothing. Written before anyone could close the other
/// end, which would raise a signal.
Handle standardInput(const ToolCommand &command)
{
    if (!command.input)
        return Handle(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    Pipe pipe(command.tool);
    ::fcntl(pipe.writeEnd.get(), F_SETFL, O_NONBLOCK);
    QByteArray line = command.input->toUtf8() + '\n';
    const ssize_t written =
        ::write(pipe.writeEnd.get(), line.constData(), std::size_t(line.size()));
    line.fill('\0');
    if (written != line.size())
        throw FileError(command.tool, EMSGSIZE);
    return std::move(pipe.readEnd);
}

/// Pointers to texts, as exec wants them.
class PointerList {
public:
    explicit PointerList(std::vector<QByteArray> texts) : m_texts(std::move(texts))
    {
        for (QByteArray &text : m_texts)
            m_pointers.push_back(text.data());
        m_pointers.push_back(nullptr);
    }

    char **data() { return m_pointers.data(); }

private:
    std::vector<QByteArray> m_texts;
    std::vector<char *> m_pointers;
};

PointerList arguments(const ToolCommand &command)
{
    std::vector<QByteArray> texts = {QFile::encodeName(command.tool)};
    for (const QString &argument : command.arguments)
        texts.push_back(QFile::encodeName(argument));
    return PointerList(std::move(texts));
}

/// Ours, but with messages and names of files in English and UTF-8.
PointerList environment()
{
    std::vector<QByteArray> texts = {"LC_ALL=C.UTF-8"};
    for (char **entry = environ; *entry; ++entry) {
        const QByteArray text(*entry);
        if (!text.startsWith("LC_ALL=") && !text.startsWith("LANGUAGE="))
            texts.push_back(text);
    }
    return PointerList(std::move(texts));
}

} // namespace

struct ToolProcess::Process {
    explicit Process(const ToolCommand &command);

    void reap();

    pid_t pid = -1; ///< and of its group
    Handle handle;
    Handle timer;
    std::optional<int> status;
    std::optional<PipeCollector> output;
    std::optional<PipeCollector> errors;

private:
    struct Start;
    [[noreturn]] static void become(Start &start);
};

/// All that the child needs, made before the fork: behind it nothing may allocate.
struct ToolProcess::Process::Start {
    explicit Start(const ToolCommand &command)
        : input(standardInput(command)), output(command.tool), errors(command.tool),
          argv(arguments(command)), envp(environment())
    {
        if (command.writableFolder)
            fence.emplace(*command.writableFolder);
        if (command.workingFolder)
            folder = QFile::encodeName(*command.workingFolder);
    }

    Handle input;
    Pipe output;
    Pipe errors;
    PointerList argv;
    PointerList envp;
    std::optional<WriteFence> fence;
    QByteArray folder;
    pid_t parent = ::getpid();
};

void ToolProcess::Process::become(Start &start)
{
    ::setsid(); // a group of its own, and no terminal to ask for a password
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    ::signal(SIGPIPE, SIG_DFL);
    const bool ready = ::getppid() == start.parent &&
                       ::dup2(start.input.get(), STDIN_FILENO) >= 0 &&
                       ::dup2(start.output.writeEnd.get(), STDOUT_FILENO) >= 0 &&
                       ::dup2(start.errors.writeEnd.get(), STDERR_FILENO) >= 0 &&
                       (start.folder.isEmpty() || ::chdir(start.folder.constData()) == 0) &&
                       (!start.fence || start.fence->enclose());
    if (ready) {
        ::close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
        ::execve(*start.argv.data(), start.argv.data(), start.envp.data());
    }
    ::_exit(notStarted);
}

ToolProcess::Process::Process(const ToolCommand &command)
{
    Start start(command);
    if (::access(QFile::encodeName(command.tool).constData(), X_OK) != 0)
        throw FileError(command.tool, errno);
    timer = Handle(::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC));
    pid = timer.get() < 0 ? -1 : ::fork();
    if (pid == 0)
        become(start);
    if (pid < 0)
        throw FileError(command.tool, errno);
    handle = Handle(int(::syscall(SYS_pidfd_open, pid, 0)));
    if (handle.get() < 0) {
        const int code = errno;
        ::kill(pid, SIGKILL);
        ::waitpid(pid, nullptr, 0);
        throw FileError(command.tool, code);
    }
    output.emplace(std::move(start.output.readEnd), std::numeric_limits<qsizetype>::max());
    errors.emplace(std::move(start.errors.readEnd), errorLimit);
}

ToolProcess::ToolProcess(const ToolCommand &command) : m_process(std::make_unique<Process>(command))
{
}

ToolProcess::~ToolProcess()
{
    if (m_process->status)
        return;
    ::kill(-m_process->pid, SIGTERM);
    halt(false);
    if (waitFor(patience))
        return;
    ::kill(-m_process->pid, SIGKILL);
    while (!waitFor(patience)) {
    }
}

bool ToolProcess::canConfine()
{
    static const bool isAvailable = WriteFence::isAvailable();
    return isAvailable;
}

void ToolProcess::halt(bool isHalted)
{
    if (!m_process->status)
        ::kill(-m_process->pid, isHalted ? SIGSTOP : SIGCONT);
}

bool ToolProcess::waitFor(std::chrono::milliseconds time)
{
    Process &process = *m_process;
    if (process.status)
        return true;
    const itimerspec end = {{}, {time.count() / 1000, time.count() % 1000 * 1'000'000 + 1}};
    ::timerfd_settime(process.timer.get(), 0, &end, nullptr);
    for (;;) {
        // A closed pipe is a negative descriptor, which poll passes over.
        std::array<pollfd, 4> events = {pollfd{process.handle.get(), POLLIN, 0},
                                        pollfd{process.timer.get(), POLLIN, 0},
                                        pollfd{process.output->descriptor(), POLLIN, 0},
                                        pollfd{process.errors->descriptor(), POLLIN, 0}};
        ::poll(events.data(), events.size(), -1);
        process.output->read();
        process.errors->read();
        if (events[0].revents != 0) {
            process.reap();
            return true;
        }
        if (events[1].revents != 0)
            return false;
        // A listing comes in ten thousands of writes: not one by one.
        if (process.output->isLarge())
            ::poll(events.data(), 2, int(collectingTime.count()));
    }
}

void ToolProcess::Process::reap()
{
    // While it isn't reaped its number, and so the group's, is nobody else's.
    ::kill(-pid, SIGKILL);
    siginfo_t ended = {};
    ::waitid(P_PID, id_t(pid), &ended, WEXITED);
    output->read();
    errors->read();
    status = ended.si_code == CLD_EXITED ? ended.si_status : 128 + ended.si_status;
}

ProcessResult ToolProcess::result() const
{
    return {m_process->status.value_or(notStarted), m_process->output->data(),
            QString::fromUtf8(m_process->errors->data())};
}

const QByteArray &ToolProcess::output() const
{
    return m_process->output->data();
}

ProcessResult ToolProcess::run(const ToolCommand &command, const std::stop_token &stop,
                               const std::function<void(const ToolProcess &)> &tick)
{
    if (stop.stop_requested())
        throw Cancelled();
    ToolProcess process(command);
    while (!process.waitFor(tickInterval)) {
        if (stop.stop_requested())
            throw Cancelled();
        tick(process);
    }
    return process.result();
}

} // namespace velmo
