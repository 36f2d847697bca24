#include "VelmoCore/Mail/IMAP/IMAPFetch.h"

#include <algorithm>

namespace velmo {

bool IMAPFetch::isSeen() const
{
    return std::any_of(flags.begin(), flags.end(), [](const QString &flag) {
        return flag.compare(u"\\Seen", Qt::CaseInsensitive) == 0;
    });
}

} // namespace velmo
