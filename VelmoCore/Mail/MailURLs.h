#pragma once

#include "VelmoCore/Mail/MailAccount.h"
#include "VelmoCore/Mail/MailMessage.h"

/// Where a message is dealt with outside.
namespace velmo::MailURLs {

/// The message in the provider's web client, or that client, or the message for a mail program
/// (RFC 2392); nothing where none of these is known.
std::optional<QUrl> open(const MailAccount &account, const MailMessage &message);
/// A new message to the sender (RFC 6068).
QUrl reply(const MailMessage &message);

} // namespace velmo::MailURLs
