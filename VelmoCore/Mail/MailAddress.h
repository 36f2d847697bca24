#pragma once

#include <QHash>
#include <QString>

#include <boost/describe.hpp>

namespace velmo {

/// Who a message is from or to.
struct MailAddress {
    QString name;    ///< as the sender writes it, empty without one
    QString address; ///< the mail address, or all of a header in which none is found

    /// What to call the sender.
    const QString &display() const { return name.isEmpty() ? address : name; }

    /// Up to two capitals for a picture of the sender; empty without any letter or number.
    QString initials() const;

    bool operator==(const MailAddress &) const = default;
    friend size_t qHash(const MailAddress &mail, size_t seed = 0)
    {
        return qHashMulti(seed, mail.name, mail.address);
    }
};
BOOST_DESCRIBE_STRUCT(MailAddress, (), (name, address))

} // namespace velmo
