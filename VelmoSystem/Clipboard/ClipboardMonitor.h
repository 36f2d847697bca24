#pragma once

#include "VelmoCore/Clipboard/ClipItem.h"
#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoCore/Settings/AppSettings.h"
#include "VelmoSystem/Ports/FrontApplication.h"
#include "VelmoSystem/Ports/Pasteboard.h"

#include <QThreadPool>

#include <memory>

namespace velmo {

class ClipboardStore;

/// Takes what the user copies into the history, and puts an item of it back on the pasteboard. What
/// its application marks as secret or passing isn't asked for. Main thread only; images are packed
/// on another.
class ClipboardMonitor : public QObject {
    Q_OBJECT

public:
    using Settings = std::function<const AppSettings &()>;

    /// The least time between two looks at the pasteboard.
    static constexpr Seconds beat = 0.75s;
    /// Of a kept image's longer side, in pixels.
    static constexpr int maxImageDimension = 2400;
    /// A longer text is cut, and so is a longer list of files; bytes.
    static constexpr qsizetype mostText = 2 << 20;
    /// A larger image isn't taken; bytes.
    static constexpr qsizetype mostImage = 64 << 20;

    /// `settings` is asked at each look.
    ClipboardMonitor(ClipboardStore &store, Pasteboard &pasteboard, const FrontApplication &front,
                     Scheduler &scheduler, Settings settings);
    /// Waits for the image that is being packed.
    ~ClipboardMonitor() override;

    /// What lies on the pasteboard now isn't taken as new.
    void start();
    void stop();
    bool isRunning() const { return m_isRunning; }

    /// Writes the item to the pasteboard, without taking that for a new copy, and brings it to the
    /// front of the history. An image comes a moment later, when it is read. `done` hears whether
    /// it is there; an image isn't where something else was copied meanwhile, or it can't be read.
    void copy(
        const ClipItem &item, std::function<void(bool isCopied)> done = [](bool) {});

private:
    /// One content of the pasteboard on its way into the history.
    struct Capture {
        std::uint64_t changeCount = 0;
        ClipSource source;
        std::vector<QString> types = {};

        bool has(QStringView type) const;
    };
    using Captured = std::shared_ptr<const Capture>;

    void check();
    void readTypes(const Capture &capture);
    void readHint(const Captured &capture);
    void readFiles(const Captured &capture);
    void readText(const Captured &capture);
    void readImage(const Captured &capture);
    void keepImage(const QByteArray &data, const ClipSource &source);
    void write(const Pasteboard::Contents &contents, const Uuid &id);
    /// Calls `next` with the bytes, unless something newer has come meanwhile.
    void read(const Captured &capture, const QString &type, qsizetype limit,
              std::function<void(const std::optional<Pasteboard::Data> &)> next);
    bool isCurrent(const Capture &capture) const;

    ClipboardStore &m_store;
    Pasteboard &m_pasteboard;
    const FrontApplication &m_front;
    Scheduler &m_scheduler;
    Settings m_settings;
    bool m_isRunning = false;
    std::uint64_t m_lastChangeCount = 0;
    std::optional<std::uint64_t> m_ownChangeCount; ///< of our own last write
    std::uint64_t m_imageNumber = 0;               ///< of the last image to be copied
    ScheduledTask m_rest;                          ///< between two looks
    QThreadPool m_worker;
};

} // namespace velmo
