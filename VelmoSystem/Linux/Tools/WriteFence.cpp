#include "VelmoSystem/Linux/Tools/WriteFence.h"

#include "VelmoCore/Storage/AtomicFile.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace velmo {
namespace {

// Newer than the headers of some systems that have them in their kernel.
constexpr quint64 refer = 1ULL << 13;
constexpr quint64 truncate = 1ULL << 14;

constexpr quint64 ordinaryWrites = LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_REMOVE_DIR |
                                   LANDLOCK_ACCESS_FS_REMOVE_FILE | LANDLOCK_ACCESS_FS_MAKE_DIR |
                                   LANDLOCK_ACCESS_FS_MAKE_REG | LANDLOCK_ACCESS_FS_MAKE_SYM;
constexpr quint64 nodes = LANDLOCK_ACCESS_FS_MAKE_CHAR | LANDLOCK_ACCESS_FS_MAKE_BLOCK |
                          LANDLOCK_ACCESS_FS_MAKE_FIFO | LANDLOCK_ACCESS_FS_MAKE_SOCK;

/// Below 1 without it.
long landlockVersion()
{
    return ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
}

/// The rights that change ordinary files, by the kernel's version of Landlock.
quint64 writes(long version)
{
    return ordinaryWrites | (version >= 2 ? refer : 0) | (version >= 3 ? truncate : 0);
}

} // namespace

WriteFence::WriteFence(const QString &folder)
{
    const long version = landlockVersion();
    if (version < 1)
        return;
    landlock_ruleset_attr rules = {};
    rules.handled_access_fs = writes(version) | nodes;
    m_ruleset = int(::syscall(SYS_landlock_create_ruleset, &rules, sizeof rules, 0));
    const int beneath = ::open(QFile::encodeName(folder).constData(), O_PATH | O_CLOEXEC);
    landlock_path_beneath_attr rule = {};
    rule.allowed_access = writes(version);
    rule.parent_fd = beneath;
    int code = m_ruleset < 0 || beneath < 0 ? errno : 0;
    if (code == 0 &&
        ::syscall(SYS_landlock_add_rule, m_ruleset, LANDLOCK_RULE_PATH_BENEATH, &rule, 0) != 0)
        code = errno;
    if (beneath >= 0)
        ::close(beneath);
    if (code == 0)
        return;
    if (m_ruleset >= 0)
        ::close(m_ruleset);
    throw FileError(folder, code);
}

WriteFence::~WriteFence()
{
    if (m_ruleset >= 0)
        ::close(m_ruleset);
}

bool WriteFence::isAvailable()
{
    return landlockVersion() >= 1;
}

bool WriteFence::enclose() const
{
    return !isReal() || (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
                         ::syscall(SYS_landlock_restrict_self, m_ruleset, 0) == 0);
}

} // namespace velmo
