#include "VelmoCore/Mail/IMAP/IMAPText.h"

#include <QStringDecoder>

#include <algorithm>
#include <cstdint>

namespace velmo::IMAPText {

QString decoded(QByteArrayView bytes)
{
    if (std::ranges::all_of(bytes, [](char byte) { return std::uint8_t(byte) < 0x80; }))
        return QString::fromLatin1(bytes); // most words, in a fraction of the time
    using Flag = QStringConverter::Flag;
    QStringDecoder decoder(QStringConverter::Utf8, Flag::Stateless | Flag::ConvertInitialBom);
    return decoder(bytes);
}

} // namespace velmo::IMAPText
