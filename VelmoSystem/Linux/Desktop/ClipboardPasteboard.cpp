#include "VelmoSystem/Linux/Desktop/ClipboardPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace velmo {

void ClipboardPasteboard::writeText(const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
}

} // namespace velmo
