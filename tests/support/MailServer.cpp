#include "tests/support/MailServer.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <cerrno>
#include <csignal>
#include <grp.h>
#include <pwd.h>
#include <sched.h>
#include <stdexcept>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <system_error>
#include <unistd.h>

namespace velmo {

namespace {

void check(bool succeeded, const char *what)
{
    if (!succeeded)
        throw std::system_error(errno, std::generic_category(), what);
}

void write(const char *path, const QByteArray &text)
{
    QFile file(path);
    check(file.open(QIODevice::WriteOnly) && file.write(text) == text.size(), path);
}

/// Where what we mount is seen by us alone.
void enterOwnNamespace()
{
    const QByteArray user = QByteArray::number(geteuid());
    const QByteArray group = QByteArray::number(getegid());
    const bool isRoot = geteuid() == 0;
    check(unshare(isRoot ? CLONE_NEWNS : CLONE_NEWUSER | CLONE_NEWNS) == 0, "unshare");
    if (!isRoot) {
        write("/proc/self/setgroups", "deny");
        write("/proc/self/uid_map", user + ' ' + user + " 1");
        write("/proc/self/gid_map", group + ' ' + group + " 1");
    }
    check(mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0, "mount /");
}

/// Dovecot keeps no mail for root.
uid_t mailOwner()
{
    return geteuid() == 0 ? getpwnam("nobody")->pw_uid : geteuid();
}

void give(const QString &path)
{
    check(chown(QFile::encodeName(path).constData(), mailOwner(), gid_t(-1)) == 0, "chown");
}

int freePort()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return server.serverPort();
}

} // namespace

OwnTrust::OwnTrust()
{
    run({"req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes", "-days",
         "2", "-subj", "/CN=Test authority", "-keyout", m_folder.path("authority.key"), "-out",
         m_folder.path("authority.pem")});
    QDir().mkpath(m_folder.path("trust"));
    QFile::copy(m_folder.path("authority.pem"), m_folder.path("trust/authority.pem"));
    run({"rehash", m_folder.path("trust")});
    enterOwnNamespace();
    check(mount(m_folder.path("trust").toUtf8(), "/etc/ssl/certs", nullptr, MS_BIND, nullptr) == 0,
          "mount /etc/ssl/certs");
}

OwnTrust::Certificate OwnTrust::issue(const QString &host, Fault fault) const
{
    const QString base = m_folder.path(QString::number(++m_count));
    QStringList arguments{
        "req",     "-newkey",    "ec",          "-pkeyopt", "ec_paramgen_curve:P-256",
        "-nodes",  "-subj",      "/CN=" + host, "-addext",  "subjectAltName=DNS:" + host,
        "-keyout", base + ".key"};
    const Certificate made{base + ".pem", base + ".key"};
    if (fault == Fault::selfSigned) {
        run(arguments << "-x509"
                      << "-out" << made.certificate);
        return made;
    }
    run(arguments << "-out" << base + ".request");
    m_folder.write("ca.conf",
                   "[ca]\ndefault_ca = test\n[test]\ndatabase = " + m_folder.path().toUtf8() +
                       "/index.txt\nnew_certs_dir = " + m_folder.path().toUtf8() +
                       "\nrand_serial = yes\nunique_subject = no\npolicy = any\n"
                       "copy_extensions = copy\n[any]\ncommonName = supplied\n");
    m_folder.write("index.txt", {});
    const bool isOld = fault == Fault::expired;
    run({"ca", "-batch", "-notext", "-config", m_folder.path("ca.conf"), "-cert",
         m_folder.path("authority.pem"), "-keyfile", m_folder.path("authority.key"), "-md",
         fault == Fault::sha1 ? "sha1" : "sha256", "-startdate", "20200101000000Z", "-enddate",
         isOld ? "20200102000000Z" : "20490101000000Z", "-in", base + ".request", "-out",
         made.certificate});
    return made;
}

void OwnTrust::run(const QStringList &arguments) const
{
    QProcess openssl;
    openssl.start("openssl", arguments);
    if (!openssl.waitForFinished() || openssl.exitCode() != 0)
        throw std::runtime_error("openssl: " + openssl.readAllStandardError().toStdString());
}

MailServer::MailServer(const OwnTrust::Certificate &certificate, const QStringList &users)
    : m_port(freePort())
{
    const passwd *self = getpwuid(geteuid());
    const QByteArray name = self->pw_name;
    const bool isRoot = geteuid() == 0;
    QByteArray configuration = R"(base_dir = BASE/run
state_dir = BASE/run
log_path = BASE/log
protocols = imap
listen = 127.0.0.1
ssl = required
ssl_cipher_list = ALL:@SECLEVEL=0
ssl_cert = <CERTIFICATE
ssl_key = <KEY
default_internal_user = INTERNAL
default_login_user = LOGIN
default_internal_group = GROUP
first_valid_uid = 0
auth_failure_delay = 0
mail_location = maildir:~/Maildir
service anvil {
  chroot =
}
service imap-login {
  chroot =
  inet_listener imap {
    port = 0
  }
  inet_listener imaps {
    port = PORT
    ssl = yes
  }
}
passdb {
  driver = passwd-file
  args = scheme=plain username_format=%u BASE/users
}
userdb {
  driver = static
  args = uid=UID gid=GID home=BASE/mail/%u
}
namespace inbox {
  inbox = yes
  separator = /
  mailbox Trash {
    special_use = \Trash
    auto = create
  }
  mailbox Archive {
    special_use = \Archive
    auto = create
  }
}
)";
    const std::map<const char *, QByteArray> values{
        {"BASE", m_folder.path().toUtf8()},
        {"CERTIFICATE", certificate.certificate.toUtf8()},
        {"KEY", certificate.key.toUtf8()},
        {"INTERNAL", isRoot ? "dovecot" : name},
        {"LOGIN", isRoot ? "dovenull" : name},
        {"GROUP", isRoot ? "dovecot" : getgrgid(getegid())->gr_name},
        {"PORT", QByteArray::number(m_port)},
        {"UID", QByteArray::number(mailOwner())},
        {"GID", QByteArray::number(isRoot ? getgrnam("nogroup")->gr_gid : getegid())},
    };
    for (const auto &[word, value] : values)
        configuration.replace(word, value);
    m_folder.write("dovecot.conf", configuration);
    QFile::setPermissions(m_folder.path(), QFile::Permissions(0x7755));
    for (const QString &user : users)
        setPassword(user, "senha " + user);
    start();
}

MailServer::~MailServer()
{
    kill();
}

void MailServer::start()
{
    m_process = std::make_unique<QProcess>();
    m_process->setChildProcessModifier([] {
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
        ::setpgid(0, 0);
    });
    m_process->setProcessChannelMode(QProcess::ForwardedChannels);
    m_process->start("/usr/sbin/dovecot", {"-F", "-c", m_folder.path("dovecot.conf")});
    if (!m_process->waitForStarted())
        throw std::runtime_error("dovecot doesn't start");
    QTcpSocket client;
    do {
        client.connectToHost(QHostAddress::LocalHost, quint16(m_port));
    } while (!client.waitForConnected() && m_process->state() == QProcess::Running);
}

void MailServer::kill()
{
    ::kill(-pid_t(m_process->processId()), SIGKILL);
    m_process->waitForFinished();
}

void MailServer::setPassword(const QString &user, const QString &password)
{
    m_passwords[user] = password;
    QByteArray users;
    for (const auto &[name, secret] : m_passwords) {
        users += (name + ":{PLAIN}" + secret + "\n").toUtf8();
        for (const char *folder :
             {"", "/Maildir", "/Maildir/tmp", "/Maildir/new", "/Maildir/cur"}) {
            QDir().mkpath(m_folder.path("mail/" + name + folder));
            give(m_folder.path("mail/" + name + folder));
        }
    }
    m_folder.write("users", users);
    QFile::setPermissions(m_folder.path("users"), QFile::Permissions(0x6644));
}

void MailServer::deliver(const QString &user, const QByteArray &message)
{
    const QString inbox = "mail/" + user + "/Maildir/";
    const QString name = QString::number(1'700'000'000 + ++m_delivered) + ".M1P1.test";
    const QString waiting = m_folder.path(inbox + "tmp/" + name);
    m_folder.write(inbox + "tmp/" + name, message);
    give(waiting);
    QFile::rename(waiting, m_folder.path(inbox + "new/" + name));
}

QString MailServer::folder(const QString &user, const QString &mailbox) const
{
    return m_folder.path("mail/" + user + "/Maildir" + (mailbox.isEmpty() ? "" : "/." + mailbox));
}

QStringList MailServer::files(const QString &user, const QString &mailbox) const
{
    const QString base = folder(user, mailbox);
    return QDir(base + "/new").entryList(QDir::Files) + QDir(base + "/cur").entryList(QDir::Files);
}

} // namespace velmo
