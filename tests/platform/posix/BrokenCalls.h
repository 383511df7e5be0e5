/// Makes system calls fail from now on; for use in a child.
#ifndef WENLOLIB_TESTS_PLATFORM_POSIX_BROKENCALLS_H
#define WENLOLIB_TESTS_PLATFORM_POSIX_BROKENCALLS_H

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

#include <initializer_list>
#include <vector>

namespace wenlolib::tests {

/// From now on, each of these system calls (SYS_...) fails with `error`, as on a broken disk or in
/// a shortage. This cannot be undone. False if the kernel cannot do it.
inline bool breakCalls(std::initializer_list<long> calls, int error) {
  const auto statement = [](int code, std::uint32_t k) {
    return sock_filter{static_cast<std::uint16_t>(code), 0, 0, k};
  };
  std::vector<sock_filter> filter{statement(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr))};
  for (const long call : calls) {
    filter.push_back({BPF_JMP | BPF_JEQ | BPF_K, 0, 1, static_cast<std::uint32_t>(call)});
    filter.push_back(
        statement(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | static_cast<std::uint32_t>(error)));
  }
  filter.push_back(statement(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
  const sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
  return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

/// Breaks the calls with which the C library looks at a file, open or not.
inline bool breakLooking(int error) {
#ifdef SYS_newfstatat
  return breakCalls({SYS_newfstatat, SYS_fstat, SYS_stat, SYS_lstat, SYS_statx}, error);
#else
  return breakCalls({SYS_fstat, SYS_statx}, error);
#endif
}

}  // namespace wenlolib::tests

#endif
