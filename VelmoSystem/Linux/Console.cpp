#include "VelmoSystem/Linux/Console.h"

#include "VelmoCore/Foundation/Text.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace velmo {

namespace {

/// The terminal's own: back to the line's start, and clear it.
const QString emptyLine = QStringLiteral("\r\033[K");

void put(std::FILE *stream, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, std::size_t(bytes.size()), stream);
}

} // namespace

Console Console::ofThisProcess()
{
    Console console;
    console.isTerminal = ::isatty(STDOUT_FILENO) != 0;
    console.showsProgress = ::isatty(STDERR_FILENO) != 0;
    for (const int descriptor : {STDOUT_FILENO, STDERR_FILENO}) {
        winsize size{};
        if (::ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
            console.width = size.ws_col;
            break;
        }
    }
    return console;
}

void Console::write(const QString &text) const
{
    put(stdout, text);
}

void Console::writeLineNow(const QString &line) const
{
    put(stdout, line + u'\n');
    std::fflush(stdout);
}

void Console::writeError(const QString &line)
{
    clearProgress();
    put(stderr, line + u'\n');
}

QString Console::readSecret(const QString &name) const
{
    termios before{};
    const bool isTyped = ::tcgetattr(STDIN_FILENO, &before) == 0;
    if (isTyped) {
        put(stderr, name + QStringLiteral(": "));
        termios silent = before;
        silent.c_lflag &= ~tcflag_t(ECHO);
        ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
    }
    QByteArray line;
    for (int c = std::getc(stdin); c != EOF && c != '\n'; c = std::getc(stdin))
        line += char(c);
    if (isTyped) {
        ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &before);
        put(stderr, QStringLiteral("\n"));
    }
    return QString::fromUtf8(line);
}

void Console::showProgress(double fraction, const QString &text)
{
    if (!showsProgress)
        return;
    QString line = text;
    std::ranges::replace_if(
        line, [](QChar character) { return character.category() == QChar::Other_Control; }, u' ');
    if (fraction >= 0)
        line = QStringLiteral("%1%  %2")
                   .arg(int(std::floor(100 * std::min(fraction, 1.0))), 3)
                   .arg(line);
    put(stderr, emptyLine + Text::prefix(line, width - 1));
    m_isProgressShown = true;
}

void Console::clearProgress()
{
    if (std::exchange(m_isProgressShown, false))
        put(stderr, emptyLine);
}

} // namespace velmo
