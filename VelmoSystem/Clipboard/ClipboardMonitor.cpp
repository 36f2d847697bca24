#include "VelmoSystem/Clipboard/ClipboardMonitor.h"

#include "VelmoCore/Clipboard/ClipboardDefaults.h"
#include "VelmoCore/Clipboard/ClipboardStore.h"
#include "VelmoCore/Clipboard/UriList.h"
#include "VelmoCore/Foundation/Log.h"
#include "VelmoSystem/Clipboard/ImageEncoder.h"
#include "VelmoSystem/FileProcessing/LocalFiles.h"

#include <QPointer>

#include <algorithm>
#include <array>

namespace velmo {

namespace {

/// How password managers on Linux say that a content is secret: by this type's bytes.
constexpr QStringView secretHint = u"x-kde-passwordManagerHint";
constexpr qsizetype longestHint = 64;
constexpr std::array fileTypes{QStringView(u"text/uri-list"),
                               QStringView(u"x-special/gnome-copied-files")};

bool isIgnored(const QString &type)
{
    return std::ranges::count(ClipboardDefaults::ignoredPasteboardTypes(), type) > 0;
}

std::vector<QUrl> localFiles(const Pasteboard::Data &data)
{
    // What was cut ends within an address.
    const QByteArray list =
        data.isWhole ? data.bytes : data.bytes.first(data.bytes.lastIndexOf('\n') + 1);
    std::vector<QUrl> files;
    for (const QUrl &url : UriList::files(list)) {
        if (const auto file = LocalFiles::fromURL(url))
            files.push_back(*file);
    }
    return files;
}

} // namespace

ClipboardMonitor::ClipboardMonitor(ClipboardStore &store, Pasteboard &pasteboard,
                                   const FrontApplication &front, Scheduler &scheduler,
                                   Settings settings)
    : m_store(store), m_pasteboard(pasteboard), m_front(front), m_scheduler(scheduler),
      m_settings(std::move(settings))
{
    m_worker.setMaxThreadCount(1);
    connect(&pasteboard, &Pasteboard::changed, this, [this] {
        if (m_isRunning && !m_rest.isPending())
            check();
    });
}

ClipboardMonitor::~ClipboardMonitor()
{
    m_worker.waitForDone();
}

void ClipboardMonitor::start()
{
    if (std::exchange(m_isRunning, true))
        return;
    m_lastChangeCount = m_pasteboard.changeCount();
}

void ClipboardMonitor::stop()
{
    m_isRunning = false;
    m_rest.cancel();
}

void ClipboardMonitor::copy(const ClipItem &item, std::function<void(bool isCopied)> done)
{
    if (item.kind == ClipKind::files) {
        write({.files = item.fileURLs.value_or(std::vector<QUrl>())}, item.id);
        done(true);
    } else if (item.kind != ClipKind::image) {
        write({.text = item.text.value_or(QString())}, item.id);
        done(true);
    } else {
        m_worker.start([images = m_store.imageWriter(), name = item.imageFile.value_or(QString()),
                        id = item.id, number = ++m_imageNumber, count = m_pasteboard.changeCount(),
                        &scheduler = m_scheduler, self = QPointer(this), done = std::move(done)] {
            const QByteArray png = images.read(name).value_or(QByteArray());
            scheduler.post([self, png, id, number, count, done] {
                // Unless something else has been copied meanwhile.
                const bool isCurrent = self && self->m_imageNumber == number &&
                                       self->m_pasteboard.changeCount() == count;
                if (isCurrent)
                    self->write({.png = png}, id);
                done(isCurrent && !png.isEmpty());
            });
        });
    }
}

void ClipboardMonitor::check()
{
    const std::uint64_t count = m_pasteboard.changeCount();
    if (count == m_lastChangeCount)
        return;
    m_lastChangeCount = count;
    m_rest = m_scheduler.after(beat, [this] { check(); });
    const AppSettings &settings = m_settings();
    if (count == m_ownChangeCount || !settings.clipboardEnabled || settings.clipboardPaused)
        return;
    Capture capture{count, {}};
    if (const auto front = m_front.current()) {
        if (std::ranges::count(settings.clipboardIgnoredBundleIDs, front->bundleID) > 0)
            return;
        capture.source = {front->name, front->bundleID};
    }
    readTypes(capture);
}

void ClipboardMonitor::readTypes(const Capture &capture)
{
    m_pasteboard.readTypes([self = QPointer(this), capture](const auto &types) {
        if (!self || !types || !self->isCurrent(capture) || std::ranges::any_of(*types, isIgnored))
            return;
        const auto captured =
            std::make_shared<const Capture>(capture.changeCount, capture.source, *types);
        if (captured->has(secretHint))
            self->readHint(captured);
        else
            self->readFiles(captured);
    });
}

void ClipboardMonitor::readHint(const Captured &capture)
{
    read(capture, secretHint.toString(), longestHint, [this, capture](const auto &hint) {
        // Whoever hints and then doesn't say what is taken at its worst.
        if (hint && hint->bytes.trimmed() != "secret")
            readFiles(capture);
    });
}

void ClipboardMonitor::readFiles(const Captured &capture)
{
    const auto type =
        std::ranges::find_if(fileTypes, [&](QStringView name) { return capture->has(name); });
    if (type == fileTypes.end()) {
        readText(capture);
        return;
    }
    read(capture, type->toString(), mostText, [this, capture](const auto &data) {
        const auto item = ClipItems::fromFiles(data ? localFiles(*data) : std::vector<QUrl>(),
                                               capture->source, m_scheduler.now());
        if (item)
            m_store.add(*item);
        else
            readText(capture);
    });
}

void ClipboardMonitor::readText(const Captured &capture)
{
    if (!capture->has(Pasteboard::textType)) {
        readImage(capture);
        return;
    }
    read(capture, Pasteboard::textType.toString(), mostText, [this, capture](const auto &data) {
        const auto item = ClipItems::fromText(data ? QString::fromUtf8(data->bytes) : QString(),
                                              capture->source, m_scheduler.now());
        if (item)
            m_store.add(*item);
        else
            readImage(capture);
    });
}

void ClipboardMonitor::readImage(const Captured &capture)
{
    const auto type = ImageEncoder::bestType(capture->types);
    if (!type)
        return;
    read(capture, *type, mostImage, [this, capture](const auto &data) {
        if (data && data->isWhole)
            keepImage(data->bytes, capture->source);
    });
}

void ClipboardMonitor::keepImage(const QByteArray &data, const ClipSource &source)
{
    m_worker.start([data, source, images = m_store.imageWriter(), now = m_scheduler.now(),
                    &scheduler = m_scheduler, self = QPointer(this)] {
        const auto image = ImageEncoder::encodePNG(data, maxImageDimension);
        if (!image)
            return;
        try {
            const QString file = images.store(image->png);
            const ClipItem item =
                ClipItems::fromImage(file, image->png, image->width, image->height, source, now);
            scheduler.post([self, images, item] {
                if (self)
                    self->m_store.add(item);
                else
                    images.remove(*item.imageFile);
            });
        } catch (const LocalizedError &error) {
            qCCritical(Log::storage).noquote()
                << "Falha ao guardar imagem do clipboard:" << error.description();
        }
    });
}

void ClipboardMonitor::write(const Pasteboard::Contents &contents, const Uuid &id)
{
    m_pasteboard.write(contents);
    m_ownChangeCount = m_pasteboard.changeCount();
    m_store.touch(id);
}

void ClipboardMonitor::read(const Captured &capture, const QString &type, qsizetype limit,
                            std::function<void(const std::optional<Pasteboard::Data> &)> next)
{
    m_pasteboard.read(type, limit,
                      [self = QPointer(this), capture, next = std::move(next)](const auto &data) {
                          if (self && self->isCurrent(*capture))
                              next(data);
                      });
}

bool ClipboardMonitor::isCurrent(const Capture &capture) const
{
    return m_isRunning && m_pasteboard.changeCount() == capture.changeCount;
}

bool ClipboardMonitor::Capture::has(QStringView type) const
{
    return std::ranges::find(types, type) != types.end();
}

} // namespace velmo
