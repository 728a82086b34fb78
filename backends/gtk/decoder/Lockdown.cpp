#include "Lockdown.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <fstream>

#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "PictureLimits.h"

namespace orivex::gtk {
namespace {

// Beside the decoded picture: what it is decoded from and into, and the decoder itself.
constexpr rlim_t mostMemory = maximumHeldBytes + (rlim_t{128} << 20U);

#if defined(__x86_64__)
constexpr std::uint32_t architecture = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr std::uint32_t architecture = AUDIT_ARCH_AARCH64;
#elif defined(__riscv) && __riscv_xlen == 64
constexpr std::uint32_t architecture = AUDIT_ARCH_RISCV64;
#else
constexpr std::uint32_t architecture = 0;
#endif

void limit(__rlimit_resource resource, rlim_t most) {
  const rlimit both{most, most};
  if (setrlimit(resource, &both) != 0) std::perror("orivex decoder: setrlimit");
}

constexpr sock_filter statement(unsigned code, std::uint32_t value) {
  return {static_cast<std::uint16_t>(code), 0, 0, value};
}

// Goes `over` so many statements when the loaded number compares.
constexpr sock_filter unlessThen(unsigned comparison, std::uint32_t value, std::uint8_t over) {
  return {static_cast<std::uint16_t>(BPF_JMP | comparison | BPF_K), over, 0, value};
}

// No sockets, and no second way to have them. Calls of another architecture have other numbers.
void leaveNetwork() {
  constexpr std::uint32_t otherNumbers = 0x40000000;  // of a second set on x86-64
  std::array<sock_filter, 9> program{{
      statement(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, arch)),
      unlessThen(BPF_JEQ, architecture, 1),
      statement(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS),
      statement(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      unlessThen(BPF_JGE, otherNumbers, 3),
      unlessThen(BPF_JEQ, SYS_socket, 2),
      unlessThen(BPF_JEQ, SYS_io_uring_setup, 1),
      statement(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
      statement(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EACCES),
  }};
  const sock_fprog filter{static_cast<unsigned short>(program.size()), program.data()};
  if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
      syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_TSYNC, &filter) != 0) {
    std::perror("orivex decoder: seccomp");
  }
}

}  // namespace

void lockDown() {
  limit(RLIMIT_CORE, 0);
  // A sanitizer's own memory is counted with the process's and is larger than any machine's.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
  limit(RLIMIT_DATA, mostMemory);
#endif
  std::ofstream("/proc/self/oom_score_adj") << 1000;
  if constexpr (architecture != 0) leaveNetwork();
}

}  // namespace orivex::gtk
