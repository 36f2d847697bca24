#include "VelmoCore/Mail/IMAP/IMAPValue.h"

#include "VelmoCore/Mail/IMAP/IMAPText.h"

namespace velmo {

std::optional<QString> IMAPValue::text() const
{
    if (const auto *atom = std::get_if<Atom>(&content))
        return atom->word;
    if (const auto *string = std::get_if<String>(&content))
        return IMAPText::decoded(string->bytes);
    return std::nullopt;
}

const std::vector<IMAPValue> *IMAPValue::list() const
{
    const auto *list = std::get_if<List>(&content);
    return list ? &list->values : nullptr;
}

} // namespace velmo
