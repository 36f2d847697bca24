#include "VelmoSystem/Linux/Desktop/DesktopShare.h"

#include "VelmoCore/Foundation/LocalizedError.h"

#include <QDir>
#include <QProcess>
#include <QStandardPaths>

#include <array>

namespace velmo {

namespace {

/// Each takes the files as its last arguments.
constexpr std::array programs = {"nautilus-sendto", "bluetooth-sendto", "blueman-sendto"};

} // namespace

void DesktopShare::share(const std::vector<QUrl> &files)
{
    const auto sender = program();
    if (!sender)
        throw LocalizedError(
            QStringLiteral("Este ambiente não tem um programa para enviar arquivos."));
    QStringList arguments;
    for (const QUrl &file : files)
        arguments.append(file.toLocalFile());
    if (!QProcess::startDetached(*sender, arguments, QDir::homePath()))
        throw LocalizedError(QStringLiteral("“%1” não pôde ser iniciado.").arg(*sender));
}

std::optional<QString> DesktopShare::program()
{
    for (const char *name : programs) {
        const QString path = QStandardPaths::findExecutable(QLatin1String(name));
        if (!path.isEmpty())
            return path;
    }
    return std::nullopt;
}

} // namespace velmo
