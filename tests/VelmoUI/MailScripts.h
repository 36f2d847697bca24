#pragma once

#include "tests/support/ScriptedStream.h"

#include <deque>

/// What a mail server with two messages says to the account "ana@example.org".
namespace velmo::MailScripts {

inline const QByteArray body = "From: Bia <bia@example.org>\r\nSubject: Oi\r\n"
                               "Content-Type: text/html; charset=utf-8\r\n\r\n"
                               "Veja <a href=\"https://mau.example/x\">www.banco.example</a> e "
                               "<a href=\"https://bom.example/y\">bom.example</a>. C\xc3\xb3"
                               "digo: 482913\r\n";

inline QByteArray fetched(int uid)
{
    return "* 1 FETCH (UID " + QByteArray::number(uid) + " FLAGS () BODY[]<0> {" +
           QByteArray::number(body.size()) + "}\r\n" + body + ")";
}

/// A connection up to the selected inbox.
inline ServerScript connected()
{
    ServerScript script =
        ServerScript().says("* OK [CAPABILITY IMAP4rev1 IDLE MOVE UIDPLUS SPECIAL-USE] ready");
    script.answers("LOGIN \"ana@example.org\" \"x\"",
                   {"* CAPABILITY IMAP4rev1 IDLE MOVE UIDPLUS SPECIAL-USE"});
    return script;
}

inline ServerScript errand(const QByteArray &command, const QByteArrayList &lines = {})
{
    ServerScript script = connected();
    script.answers("SELECT \"INBOX\"", {"* OK [UIDVALIDITY 1]"});
    script.answers(command, lines);
    return script.answers("LOGOUT");
}

/// The test of the account, and then its worker's connection, which waits for news.
inline std::deque<ServerScript> newAccount()
{
    ServerScript test = connected();
    test.answers("SELECT \"INBOX\"");
    test.answers("LOGOUT");
    ServerScript worker = connected();
    worker.answers("LIST \"\" \"*\" RETURN (SPECIAL-USE)",
                   {"* LIST (\\Trash) \"/\" Lixo", "* LIST (\\Archive) \"/\" Arquivo"});
    worker.answers("SELECT \"INBOX\"", {"* 2 EXISTS", "* OK [UIDVALIDITY 1]"});
    worker.answers("FETCH 1:* (UID FLAGS INTERNALDATE BODY.PEEK[]<0.65536>)",
                   {fetched(3), fetched(4)});
    worker.hears("n5 IDLE").says("+");
    return {test, worker};
}

} // namespace velmo::MailScripts
