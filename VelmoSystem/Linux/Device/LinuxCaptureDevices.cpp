#include "VelmoSystem/Linux/Device/LinuxCaptureDevices.h"

#include "VelmoCore/Foundation/LocalizedError.h"
#include "VelmoCore/Foundation/Log.h"
#include "VelmoSystem/Linux/Device/PulseRecorders.h"

#include <QPointer>

#include <filesystem>
#include <unistd.h>

namespace velmo {

namespace {

namespace fs = std::filesystem;

constexpr Seconds retryDelay = 10s;
constexpr int leaveTime = 1'000; // milliseconds

/// The entries of a folder that can be read; it may go meanwhile, as a process does.
template <class Take>
bool isAnyEntry(const fs::path &folder, const Take &is)
{
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        if (is(entry->path()))
            return true;
    }
    return false;
}

bool isAnyOpen(const std::string &cameras)
{
    const auto isCamera = [&](const fs::path &descriptor) {
        std::error_code closed;
        return fs::read_symlink(descriptor, closed).native().starts_with(cameras);
    };
    const std::string self = std::to_string(::getpid());
    return isAnyEntry("/proc", [&](const fs::path &process) {
        const std::string name = process.filename().native();
        return name.find_first_not_of("0123456789") == std::string::npos && name != self &&
               isAnyEntry(process / "fd", isCamera);
    });
}

} // namespace

LinuxCaptureDevices::LinuxCaptureDevices(Scheduler &scheduler, const QString &cameras)
    : m_scheduler(scheduler), m_cameras(cameras), m_listener(std::make_unique<QThreadPool>())
{
    m_listener->setMaxThreadCount(1);
    m_looker.setMaxThreadCount(1);
}

LinuxCaptureDevices::~LinuxCaptureDevices()
{
    m_stop.request_stop();
    // A thread that a stuck sound server holds ends with the process.
    if (!m_listener->waitForDone(leaveTime))
        static_cast<void>(m_listener.release());
}

void LinuxCaptureDevices::watchMicrophone(bool isWatched)
{
    if (isWatched == m_isWatched)
        return;
    m_isWatched = isWatched;
    m_isLost = false;
    if (isWatched)
        return follow();
    m_stop.request_stop();
    m_retry.cancel();
    m_users.clear();
}

void LinuxCaptureDevices::follow()
{
    m_stop = std::stop_source();
    const auto post = [self = QPointer(this), stop = m_stop.get_token(),
                       &scheduler = m_scheduler](auto body) {
        if (stop.stop_requested())
            return;
        scheduler.post([self, stop, body = std::move(body)] {
            if (!stop.stop_requested())
                body(*self);
        });
    };
    m_listener->start([post, stop = m_stop.get_token()] {
        try {
            PulseRecorders::follow(stop, [&](const QStringList &users) {
                post([users](LinuxCaptureDevices &self) { self.setUsers(users); });
            });
        } catch (const LocalizedError &error) {
            post([reason = error.description()](LinuxCaptureDevices &self) { self.lose(reason); });
        }
    });
}

void LinuxCaptureDevices::lose(const QString &reason)
{
    if (!std::exchange(m_isLost, true))
        qCInfo(Log::app, "Microfone sem notícias: %ls", qUtf16Printable(reason));
    m_retry = m_scheduler.after(retryDelay, [this] { follow(); });
    setUsers({});
}

void LinuxCaptureDevices::setUsers(const QStringList &users)
{
    if (m_users == users)
        return;
    m_users = users;
    Q_EMIT microphoneUsersChanged();
}

void LinuxCaptureDevices::isCameraInUse(std::function<void(bool)> answer)
{
    m_looker.start([self = QPointer(this), answer = std::move(answer),
                    cameras = m_cameras.toStdString(), &scheduler = m_scheduler] {
        scheduler.post([self, answer, isOpen = isAnyOpen(cameras)] {
            if (self)
                answer(isOpen);
        });
    });
}

} // namespace velmo
