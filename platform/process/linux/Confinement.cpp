#include "platform/process/linux/Confinement.h"

#include <cerrno>
#include <fcntl.h>
#include <initializer_list>
#include <memory>
#include <sched.h>
#include <seccomp.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace cinedisc {

namespace {

// One frame is decoded within 400 MiB; the rest is for stacks and what the libraries keep.
constexpr rlim_t mostData = rlim_t{768} << 20;

bool limit(__rlimit_resource resource, rlim_t most) {
    const rlimit value{most, most};
    return setrlimit(resource, &value) == 0;
}

/// When memory runs out the system is to end this process, not the viewer.
void goFirst() {
    const int file = open("/proc/self/oom_score_adj", O_WRONLY | O_CLOEXEC);
    if (file < 0) return;
    // Where it cannot be written, nothing is lost but this.
    [[maybe_unused]] const auto written = write(file, "1000", 4);
    close(file);
}

class Filter {
  public:
    // What is not allowed fails like a missing right: a library that asks for more finds a way without it.
    Filter() : context_(seccomp_init(SCMP_ACT_ERRNO(EPERM)), &seccomp_release) {}

    bool load() {
        for (const int call :
             {SCMP_SYS(read), SCMP_SYS(write), SCMP_SYS(futex), SCMP_SYS(munmap), SCMP_SYS(mremap),
              SCMP_SYS(madvise), SCMP_SYS(brk), SCMP_SYS(exit), SCMP_SYS(exit_group), SCMP_SYS(rt_sigreturn),
              SCMP_SYS(rt_sigprocmask), SCMP_SYS(clock_gettime), SCMP_SYS(sched_yield),
              SCMP_SYS(sched_getaffinity), SCMP_SYS(set_robust_list), SCMP_SYS(rseq), SCMP_SYS(getrandom)})
            allow(call);
        // Memory, but none that could be run.
        const auto noneToRun = SCMP_A2(SCMP_CMP_MASKED_EQ, PROT_EXEC, 0);
        allow(SCMP_SYS(mmap), noneToRun);
        allow(SCMP_SYS(mprotect), noneToRun);
        // Threads, but no processes. The flags of the newer call cannot be looked at; without it the older
        // one is used.
        allow(SCMP_SYS(clone), SCMP_A0(SCMP_CMP_MASKED_EQ, CLONE_THREAD, CLONE_THREAD));
        good_ = good_ && seccomp_rule_add(context_.get(), SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(clone3), 0) == 0;
        return good_ && seccomp_load(context_.get()) == 0;
    }

  private:
    template <typename... Conditions>
    void allow(int call, Conditions... conditions) {
        good_ = good_ && seccomp_rule_add(context_.get(), SCMP_ACT_ALLOW, call, sizeof...(conditions),
                                          conditions...) == 0;
    }

    std::unique_ptr<void, decltype(&seccomp_release)> context_;
    bool good_ = context_ != nullptr;
};

}  // namespace

bool confineThisProcess() {
    goFirst();
    // Of the memory image that a crash leaves nothing is written, whatever the system does with such images.
    return prctl(PR_SET_DUMPABLE, 0) == 0 && limit(RLIMIT_CORE, 0) && limit(RLIMIT_FSIZE, 0) &&
           limit(RLIMIT_NOFILE, 0) && limit(RLIMIT_DATA, mostData) &&
           prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && Filter().load();
}

}  // namespace cinedisc
