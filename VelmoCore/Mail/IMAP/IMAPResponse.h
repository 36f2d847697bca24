#pragma once

#include "VelmoCore/Foundation/Date.h"
#include "VelmoCore/Mail/IMAP/IMAPFetch.h"

#include <QByteArray>
#include <QSet>
#include <QString>
#include <QStringView>

#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

/// Reads a mail server's responses (RFC 3501), each a line with its literals in place. What isn't
/// the response asked for, or can't be read, is absent.
namespace velmo::IMAPResponse {

/// "* 172 EXISTS"
struct Count {
    std::int64_t number;
    QString keyword; ///< in upper case
};

/// A mailbox of a LIST response.
struct Listing {
    std::vector<QString> attributes; ///< such as "\Trash", as received
    QString name;                    ///< as received, which is what the server wants to hear again

    bool operator==(const Listing &) const = default;
};

/// "* SEARCH 2 5 9"
struct Search {
    std::vector<std::uint32_t> numbers;
};

/// Any other line: the answer to a command, a greeting, a list of capabilities, a remark.
struct Status {
    /// A response code with something behind its name, such as "[UIDVALIDITY 42]".
    struct Code {
        QString name;
        std::optional<std::uint32_t> number;
    };
    std::vector<Code> codes;
    /// The words behind CAPABILITY, of a line of its own or of a response code.
    std::optional<QSet<QString>> capabilities;
};

using Response = std::variant<Status, IMAPFetch, Count, Listing, Search>;

/// Every response is one of these.
Response read(const QByteArray &response);

std::optional<IMAPFetch> fetch(const QByteArray &response);

/// "17-Jul-2024 09:01:02 +0000", with spaces around it or a day of one digit as well.
std::optional<Date> parseInternalDate(QStringView text);

/// The number in a line such as "* 172 EXISTS". `keyword` is in upper case.
std::optional<std::int64_t> count(const QByteArray &response, QStringView keyword);

std::optional<Listing> list(const QByteArray &response);

/// The numbers of a SEARCH response, of which there may be none; other words are left out.
std::optional<std::vector<std::uint32_t>> search(const QByteArray &response);

/// The words behind CAPABILITY in upper case, in a line of its own or in brackets. On a line of its
/// own the last word keeps a CR LF that ends the line.
std::optional<QSet<QString>> capabilities(const QByteArray &response);

/// The number of a response code such as "[UIDVALIDITY 3857529045]", whose name is in any case.
std::optional<std::uint32_t> code(QStringView name, const QByteArray &response);

/// The text as a quoted string of a command.
QString quote(const QString &text);

} // namespace velmo::IMAPResponse
