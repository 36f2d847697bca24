#pragma once

#include <QObject>
#include <QStringList>

#include <functional>

namespace velmo {

/// Who listens to the microphone, and whether somebody films.
class CaptureDevices : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Nobody seems to listen unless it is watched, and at first then.
    virtual void watchMicrophone(bool isWatched) = 0;
    /// The programs that record now; a browser has its name in `BrowserWindows`.
    virtual QStringList microphoneUsers() const = 0;
    /// Looks for whoever has a camera open, Orvane apart. Answers once, later, on the main thread,
    /// while this object exists.
    virtual void isCameraInUse(std::function<void(bool)> answer) = 0;

Q_SIGNALS:
    void microphoneUsersChanged();
};

} // namespace velmo
