#pragma once

#include "VelmoUI/Design/RecordListModel.h"
#include "VelmoUI/Modules/Frame/ModulePage.h"
#include "VelmoUI/Modules/Mail/MailServices.h"

#include <QtQml/qqmlregistration.h>

namespace velmo {

/// A login that a message offers: a code, or else a link.
struct SignInRow {
    QString id; ///< the message's
    QString sender;
    QString code;
    QString host; ///< that the link leads to; empty beside a code

    bool operator==(const SignInRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(SignInRow, (), (id, sender, code, host))

/// The logins that the last minutes brought, newest first.
class SignInsModel : public velmo::ModulePage {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by its module")
    Q_PROPERTY(QAbstractItemModel *signIns READ signIns CONSTANT)

public:
    explicit SignInsModel(const MailServices &services);

    QAbstractItemModel *signIns() { return &m_rows; }

    /// Copies the code, or opens the link.
    Q_INVOKABLE void use(const QString &id);
    /// Offers it no more.
    Q_INVOKABLE void dismiss(const QString &id);

private:
    void update();

    const MailServices m_services;
    RecordListModel<SignInRow> m_rows;
};

} // namespace velmo
