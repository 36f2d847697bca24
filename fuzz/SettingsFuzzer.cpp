#include "VelmoCore/Settings/SettingsCoder.h"

#include <cstdint>
#include <cstdlib>

/// Whatever a file holds, decoding gives a record that a file can keep.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace velmo;

    const QByteArray text(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const SettingsCoder::DecodeResult result = SettingsCoder::decode(text);
    if (result.wasUnreadable && !(result.settings == AppSettings()))
        std::abort();
    const SettingsCoder::DecodeResult again =
        SettingsCoder::decode(SettingsCoder::encode(result.settings));
    if (again.wasUnreadable || !again.discardedKeys.empty() || again.settings != result.settings)
        std::abort();
    return 0;
}
