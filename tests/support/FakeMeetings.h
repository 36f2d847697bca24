#pragma once

#include "VelmoSystem/Ports/BrowserWindows.h"
#include "VelmoSystem/Ports/CaptureDevices.h"
#include "VelmoSystem/Ports/WebPageButton.h"

#include <utility>

namespace velmo {

struct FakeBrowserWindows : BrowserWindows {
    std::vector<Window> windows() const override { return all; }
    void show(std::vector<Window> windows)
    {
        all = std::move(windows);
        Q_EMIT changed();
    }

    std::vector<Window> all;
};

/// Remembers who asks for the camera until the test answers.
struct FakeCaptureDevices : CaptureDevices {
    void watchMicrophone(bool isWatched) override { isMicrophoneWatched = isWatched; }
    QStringList microphoneUsers() const override { return users; }
    void isCameraInUse(std::function<void(bool)> answer) override
    {
        ++cameraLooks;
        cameraAnswer = std::move(answer);
    }

    void listen(const QStringList &programs)
    {
        users = programs;
        Q_EMIT microphoneUsersChanged();
    }
    void answerCamera(bool isInUse) { std::exchange(cameraAnswer, {})(isInUse); }

    bool isMicrophoneWatched = false;
    QStringList users;
    int cameraLooks = 0;
    std::function<void(bool)> cameraAnswer;
};

/// A page without such a button.
struct FakeWebPageButton : WebPageButton {
    void press(const QStringList &, qint64, std::function<void(bool)> answer) override
    {
        answer(false);
    }
    void findName(const QStringList &, qint64,
                  std::function<void(const std::optional<QString> &)> answer) override
    {
        answer(std::nullopt);
    }
};

} // namespace velmo
