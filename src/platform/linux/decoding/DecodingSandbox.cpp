#include "platform/linux/decoding/DecodingSandbox.h"

#include <QFile>

#include <linux/landlock.h>
#include <seccomp.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <initializer_list>
#include <memory>

#include <fcntl.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tallowby {

namespace {

constexpr rlim_t kMaxMemory = rlim_t{1} << 30;
constexpr rlim_t kMaxOpenFiles = 16;
/// In seconds, for all pictures of one process.
constexpr rlim_t kMaxProcessorTime = 60;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
/// The sanitizers keep their own books of the memory, in terabytes of addresses.
constexpr bool kHasWholeAddressSpace = true;
#else
constexpr bool kHasWholeAddressSpace = false;
#endif

void limit(__rlimit_resource resource, rlim_t value) {
    rlimit now{};
    ::getrlimit(resource, &now);
    const rlim_t bounded = std::min(value, now.rlim_max);
    const rlimit wanted{bounded, bounded};
    ::setrlimit(resource, &wanted);
}

/// In bytes: the addresses that this process has already, most of them libraries.
rlim_t usedAddressSpace() {
    QFile statistics(QStringLiteral("/proc/self/statm"));
    if (!statistics.open(QIODevice::ReadOnly)) {
        return 0;
    }
    return statistics.readAll().split(' ').first().toULongLong() * rlim_t(::sysconf(_SC_PAGESIZE));
}

void limitResources() {
    limit(RLIMIT_CORE, 0);
    limit(RLIMIT_FSIZE, 0);
    limit(RLIMIT_MEMLOCK, 0);
    limit(RLIMIT_NOFILE, kMaxOpenFiles);
    limit(RLIMIT_CPU, kMaxProcessorTime);
    if (const rlim_t used = usedAddressSpace(); used > 0 && !kHasWholeAddressSpace) {
        limit(RLIMIT_AS, used + kMaxMemory);
    }
}

/// Leaves only the folders to be read. Kernels before 5.13 do not know how.
void limitFiles(const QStringList &readableFolders) {
    const landlock_ruleset_attr rules{.handled_access_fs = LANDLOCK_ACCESS_FS_EXECUTE | LANDLOCK_ACCESS_FS_WRITE_FILE |
                                                           LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR};
    const int ruleset = int(::syscall(SYS_landlock_create_ruleset, &rules, sizeof rules, 0));
    if (ruleset < 0) {
        return;
    }
    for (const QString &folder : readableFolders) {
        const int parent = ::open(QFile::encodeName(folder).constData(), O_PATH | O_CLOEXEC);
        if (parent < 0) {
            continue;
        }
        landlock_path_beneath_attr beneath{};
        beneath.allowed_access = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;
        beneath.parent_fd = parent;
        ::syscall(SYS_landlock_add_rule, ruleset, LANDLOCK_RULE_PATH_BENEATH, &beneath, 0);
        ::close(parent);
    }
    ::syscall(SYS_landlock_restrict_self, ruleset, 0);
    ::close(ruleset);
}

using Filter = std::unique_ptr<void, decltype(&seccomp_release)>;

/// Calls that a kernel or an architecture does not know cannot be made either.
void refuse(const Filter &filter, std::initializer_list<int> calls, int error = EPERM) {
    for (const int call : calls) {
        static_cast<void>(seccomp_rule_add(filter.get(), SCMP_ACT_ERRNO(std::uint32_t(error)), call, 0));
    }
}

void refuseWhere(const Filter &filter, int call, scmp_arg_cmp argument) {
    static_cast<void>(seccomp_rule_add_array(filter.get(), SCMP_ACT_ERRNO(EPERM), call, 1, &argument));
}

void refuseOpeningForWriting(const Filter &filter) {
    for (const scmp_datum_t flag : {O_WRONLY, O_RDWR, O_CREAT, O_TRUNC}) {
        refuseWhere(filter, SCMP_SYS(open), {1, SCMP_CMP_MASKED_EQ, flag, flag});
        refuseWhere(filter, SCMP_SYS(openat), {2, SCMP_CMP_MASKED_EQ, flag, flag});
    }
}

bool limitSystemCalls() {
    const Filter filter(seccomp_init(SCMP_ACT_ALLOW), &seccomp_release);
    if (!filter) {
        return false;
    }
    // Other programs and processes. Threads are allowed: the scaling of pictures has some.
    refuse(filter, {SCMP_SYS(execve), SCMP_SYS(execveat), SCMP_SYS(fork), SCMP_SYS(vfork), SCMP_SYS(ptrace),
                    SCMP_SYS(process_vm_readv), SCMP_SYS(process_vm_writev), SCMP_SYS(kill), SCMP_SYS(tkill),
                    SCMP_SYS(pidfd_open), SCMP_SYS(pidfd_getfd), SCMP_SYS(pidfd_send_signal), SCMP_SYS(kcmp),
                    SCMP_SYS(rt_sigqueueinfo), SCMP_SYS(rt_tgsigqueueinfo)});
    refuseWhere(filter, SCMP_SYS(clone), {0, SCMP_CMP_MASKED_EQ, CLONE_THREAD, 0});
    refuseWhere(filter, SCMP_SYS(tgkill), {0, SCMP_CMP_NE, scmp_datum_t(::getpid()), 0});
    refuseWhere(filter, SCMP_SYS(prlimit64), {0, SCMP_CMP_NE, 0, 0});
    // Its flags lie where no filter sees them; the C library goes on to the older call.
    refuse(filter, {SCMP_SYS(clone3), SCMP_SYS(openat2)}, ENOSYS);
    // The network, and messages to others.
    refuse(filter, {SCMP_SYS(socket), SCMP_SYS(socketpair), SCMP_SYS(connect), SCMP_SYS(bind), SCMP_SYS(listen),
                    SCMP_SYS(accept), SCMP_SYS(accept4), SCMP_SYS(sendto), SCMP_SYS(sendmsg), SCMP_SYS(sendmmsg),
                    SCMP_SYS(recvmsg), SCMP_SYS(recvmmsg), SCMP_SYS(shmget), SCMP_SYS(shmat), SCMP_SYS(msgget),
                    SCMP_SYS(semget), SCMP_SYS(mq_open)});
    // Files.
    refuseOpeningForWriting(filter);
    refuse(filter, {SCMP_SYS(creat),     SCMP_SYS(open_by_handle_at),
                    SCMP_SYS(unlink),    SCMP_SYS(unlinkat),
                    SCMP_SYS(rename),    SCMP_SYS(renameat),
                    SCMP_SYS(renameat2), SCMP_SYS(link),
                    SCMP_SYS(linkat),    SCMP_SYS(symlink),
                    SCMP_SYS(symlinkat), SCMP_SYS(mkdir),
                    SCMP_SYS(mkdirat),   SCMP_SYS(rmdir),
                    SCMP_SYS(mknod),     SCMP_SYS(mknodat),
                    SCMP_SYS(truncate),  SCMP_SYS(chmod),
                    SCMP_SYS(fchmodat),  SCMP_SYS(chown),
                    SCMP_SYS(lchown),    SCMP_SYS(fchownat),
                    SCMP_SYS(setxattr),  SCMP_SYS(lsetxattr),
                    SCMP_SYS(utimensat)});
    // The system itself.
    refuse(filter, {SCMP_SYS(mount), SCMP_SYS(umount2), SCMP_SYS(unshare), SCMP_SYS(setns), SCMP_SYS(chroot),
                    SCMP_SYS(pivot_root), SCMP_SYS(bpf), SCMP_SYS(perf_event_open), SCMP_SYS(userfaultfd),
                    SCMP_SYS(io_uring_setup), SCMP_SYS(add_key), SCMP_SYS(request_key), SCMP_SYS(keyctl),
                    SCMP_SYS(memfd_create)});
    return seccomp_load(filter.get()) == 0;
}

} // namespace

bool enterDecodingSandbox(const QStringList &readableFolders) {
    ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    // First: it reads what no file rule allows.
    limitResources();
    limitFiles(readableFolders);
    return limitSystemCalls();
}

void allowProcessorTime(int seconds) {
    rusage used{};
    ::getrusage(RUSAGE_SELF, &used);
    rlimit allowed{};
    ::getrlimit(RLIMIT_CPU, &allowed);
    // What has been begun of a second counts as one.
    allowed.rlim_cur = std::min(rlim_t(used.ru_utime.tv_sec + used.ru_stime.tv_sec + 1 + seconds), allowed.rlim_max);
    ::setrlimit(RLIMIT_CPU, &allowed);
}

} // namespace tallowby
