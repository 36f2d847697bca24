#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace velmo {

/// A button of the page in a browser's window: the first whose name or description holds one of
/// the labels, in any case. Answers once, later, on the main thread, while this object exists.
class WebPageButton {
public:
    virtual ~WebPageButton() = default;

    /// Presses it. False where there is none, it can't be pressed or the desktop or the browser has
    /// no accessibility. `pid` is the browser's.
    virtual void press(const QStringList &labels, qint64 pid, std::function<void(bool)> answer) = 0;
    /// What it is called.
    virtual void findName(const QStringList &labels, qint64 pid,
                          std::function<void(const std::optional<QString> &)> answer) = 0;
};

} // namespace velmo
