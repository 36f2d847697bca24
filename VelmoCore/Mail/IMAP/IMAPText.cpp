#include "VelmoCore/Mail/IMAP/IMAPText.h"

#include <QStringDecoder>

namespace velmo::IMAPText {

QString decoded(QByteArrayView bytes)
{
    using Flag = QStringConverter::Flag;
    QStringDecoder decoder(QStringConverter::Utf8, Flag::Stateless | Flag::ConvertInitialBom);
    return decoder(bytes);
}

} // namespace velmo::IMAPText
