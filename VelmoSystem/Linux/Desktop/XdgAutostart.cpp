#include "VelmoSystem/Linux/Desktop/XdgAutostart.h"

#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Storage/AppPaths.h"
#include "VelmoCore/Storage/AtomicFile.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <cerrno>
#include <unistd.h>

namespace velmo {
namespace {

constexpr qint64 longestEntry = 65'536;

/// A path as the first word of an "Exec" value, which is unescaped as any text of a desktop entry
/// and then as a quoted word with field codes.
QByteArray execWord(const QString &path)
{
    QByteArray word = "\"";
    for (const char byte : QFile::encodeName(path)) {
        switch (byte) {
        case '"':
        case '`':
        case '$':
            word.append("\\\\").append(byte);
            break;
        case '\\':
            word.append("\\\\\\\\");
            break;
        case '%':
            word.append("%%");
            break;
        case '\n':
            word.append("\\n");
            break;
        default:
            word.append(byte);
        }
    }
    return word + '"';
}

/// The short name survives a move of the binary.
QByteArray command()
{
    const QString own = QCoreApplication::applicationFilePath();
    const QString installed = QStandardPaths::findExecutable(QStringLiteral("orvane"));
    const bool isInstalled = !installed.isEmpty() && QFileInfo(installed).canonicalFilePath() ==
                                                         QFileInfo(own).canonicalFilePath();
    return isInstalled ? QByteArray("orvane") : execWord(own);
}

/// Whether "key" of the group "Desktop Entry" is `value`.
bool holds(const QByteArray &entry, QByteArrayView key, QByteArrayView value)
{
    bool isInGroup = false;
    bool isHeld = false;
    for (const QByteArray &line : entry.split('\n')) {
        const QByteArray text = line.trimmed();
        const auto equals = text.indexOf('=');
        if (text.startsWith('['))
            isInGroup = text == "[Desktop Entry]";
        else if (isInGroup && equals > 0 && text.first(equals).trimmed() == key)
            isHeld = text.sliced(equals + 1).trimmed() == value;
    }
    return isHeld;
}

void remove(const QString &path)
{
    if (::unlink(QFile::encodeName(path).constData()) != 0 && errno != ENOENT && errno != ENOTDIR)
        throw FileError(path, errno);
}

} // namespace

XdgAutostart::XdgAutostart(const QString &configFolder)
    : m_path(configFolder + QStringLiteral("/autostart/app.orvane.Orvane.desktop"))
{
}

QString XdgAutostart::standardFolder()
{
    return AppPaths::baseDirectory("XDG_CONFIG_HOME", QStringLiteral(".config"));
}

LoginItem::Status XdgAutostart::status() const
{
    try {
        const QByteArray entry = AtomicFile::read(m_path, longestEntry);
        return holds(entry, "Hidden", "true") || holds(entry, "X-GNOME-Autostart-enabled", "false")
                   ? Status::requiresApproval
                   : Status::enabled;
    } catch (const FileError &error) {
        // The desktop can't start from what can't be read either.
        if (error.code() != ENOENT && error.code() != ENOTDIR)
            qCWarning(Log::permissions, "%s", error.what());
        return Status::disabled;
    }
}

void XdgAutostart::setEnabled(bool isEnabled)
{
    if (!isEnabled || QFileInfo(m_path).isSymLink())
        remove(m_path); // `write` would follow a link to an entry that isn't ours
    if (!isEnabled)
        return;
    AtomicFile::write("[Desktop Entry]\n"
                      "Type=Application\n"
                      "Name=Orvane\n"
                      "Icon=app.orvane.Orvane\n"
                      "Exec=" +
                          command() +
                          "\n"
                          "Terminal=false\n"
                          "X-GNOME-Autostart-enabled=true\n",
                      m_path);
}

} // namespace velmo
