#pragma once

#include <QObject>
#include <QString>

#include <vector>

namespace velmo {

/// The windows of web browsers.
class BrowserWindows : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    struct Window {
        QString browser;      ///< its name, which `CaptureDevices` has for it, too
        QString title;        ///< of the page that shows, without the browser's own at its end
        qint64 pid = 0;       ///< 0 where the window doesn't say
        bool isFront = false; ///< it has the user's attention

        bool operator==(const Window &) const = default;
    };

    virtual std::vector<Window> windows() const = 0;

Q_SIGNALS:
    /// A window came, went, shows another title, came to the front or left it.
    void changed();
};

} // namespace velmo
