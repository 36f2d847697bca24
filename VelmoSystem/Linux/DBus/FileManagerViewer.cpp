#include "VelmoSystem/Linux/DBus/FileManagerViewer.h"

#include "VelmoCore/Foundation/Log.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>

#include <set>

namespace velmo {

FileManagerViewer::FileManagerViewer(QDBusConnection bus) : m_bus(std::move(bus))
{
}

void FileManagerViewer::reveal(const std::vector<QUrl> &files)
{
    if (files.empty())
        return;
    if (!m_bus.isConnected()) {
        openFolders(files);
        return;
    }
    QStringList uris;
    for (const QUrl &file : files)
        uris.append(file.toString(QUrl::FullyEncoded));

    auto message = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.FileManager1"),
                                                  QStringLiteral("/org/freedesktop/FileManager1"),
                                                  QStringLiteral("org.freedesktop.FileManager1"),
                                                  QStringLiteral("ShowItems"));
    message << uris << QString();
    auto *const watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message), &m_context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &m_context,
                     [this, watcher, files] {
                         watcher->deleteLater();
                         if (!watcher->isError())
                             return;
                         qCInfo(Log::app, "O gerenciador de arquivos não mostra itens: %ls",
                                qUtf16Printable(watcher->error().message()));
                         openFolders(files);
                     });
}

void FileManagerViewer::open(const QUrl &url)
{
    if (QDesktopServices::openUrl(url))
        return;
    qCWarning(Log::app, "Não foi possível abrir %ls", qUtf16Printable(url.toDisplayString()));
    onFailure(QStringLiteral("Nenhum aplicativo abre “%1”.")
                  .arg(url.toDisplayString(QUrl::PreferLocalFile)));
}

void FileManagerViewer::openFolders(const std::vector<QUrl> &files)
{
    std::set<QUrl> folders;
    for (const QUrl &file : files)
        folders.insert(file.adjusted(QUrl::RemoveFilename | QUrl::StripTrailingSlash));
    for (const QUrl &folder : folders)
        open(folder);
}

} // namespace velmo
