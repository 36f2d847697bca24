#include "VelmoSystem/Mail/IMAPError.h"

namespace velmo {

IMAPError IMAPError::connection(const QString &text, Reason reason)
{
    return {reason, text, QStringLiteral("Sem conexão com o servidor (%1).").arg(text)};
}

IMAPError IMAPError::rejected(const QString &text, Reason reason)
{
    return {reason, text,
            text.isEmpty() ? QStringLiteral("O servidor recusou o pedido.")
                           : QStringLiteral("O servidor respondeu: %1").arg(text)};
}

IMAPError IMAPError::unsupported(const QString &text)
{
    return {Reason::unsupported, text, text};
}

IMAPError IMAPError::closed()
{
    return {Reason::closed, {}, QStringLiteral("O servidor fechou a conexão.")};
}

QString IMAPError::advice() const
{
    switch (m_reason) {
    case Reason::hostNotFound:
        return QStringLiteral("Confira o endereço do servidor.");
    case Reason::untrusted:
        return QStringLiteral("O certificado do servidor não é confiável, e a senha não foi "
                              "enviada. Confira o endereço do servidor ou fale com quem o mantém.");
    case Reason::notIMAP:
        return QStringLiteral("Não é um servidor IMAP com TLS. Confira o servidor e a porta.");
    case Reason::badPassword:
        return QStringLiteral("Confira o usuário e use uma senha de app.");
    case Reason::connection:
        return QStringLiteral("Confira a rede, o servidor e a porta.");
    case Reason::rejected:
    case Reason::unsupported:
    case Reason::closed:
        return {};
    }
    Q_UNREACHABLE();
}

} // namespace velmo
