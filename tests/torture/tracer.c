#define _GNU_SOURCE
#include "tracer.h"

#include <errno.h>
#include <signal.h>
#include <stdint.h>
#include <string.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#ifndef __x86_64__
#error "only x86-64 is supported: the tracer uses its registers"
#endif

enum { mostTracees = 16 };

typedef struct Tracee {
  pid_t id;
  unsigned long number; /* of the current call */
  int hasResult;        /* if so, the call must end with `result` */
  long result;
} Tracee;

typedef struct Session {
  const TracePlan* plan;
  Trace* trace;
  pid_t child;
  int inside;
  unsigned long programBreak;
  Tracee tracees[mostTracees];
  int count;
} Session;

void traceMe(void) {
  ptrace(PTRACE_TRACEME, 0, NULL, NULL);
  kill(getpid(), SIGSTOP);
}

static Tracee* traceeOf(Session* session, pid_t id) {
  int i;
  for (i = 0; i < session->count; ++i) {
    if (session->tracees[i].id == id) return &session->tracees[i];
  }
  if (session->count == mostTracees) return &session->tracees[mostTracees - 1];
  session->tracees[session->count] = (Tracee){id, 0, 0, 0};
  return &session->tracees[session->count++];
}

static void forget(Session* session, pid_t id) {
  int i;
  for (i = 0; i < session->count; ++i) {
    if (session->tracees[i].id == id) {
      session->tracees[i] = session->tracees[--session->count];
      return;
    }
  }
}

/* Calls that wait for other threads, free memory or end the process never fail. */
static int isSpared(const Session* session, const struct __ptrace_syscall_info* call) {
  switch (call->entry.nr) {
    case SYS_futex:
    case SYS_munmap:
    case SYS_madvise:
    case SYS_exit:
    case SYS_exit_group:
    case SYS_rt_sigreturn:
    case SYS_restart_syscall:
      return 1;
    case SYS_brk:
      return call->entry.args[0] < session->programBreak;
    default:
      return 0;
  }
}

static int pathArgument(long number) {
  switch (number) {
    case SYS_openat:
    case SYS_newfstatat:
    case SYS_unlinkat:
    case SYS_renameat:
    case SYS_renameat2:
    case SYS_linkat:
    case SYS_faccessat:
    case SYS_faccessat2:
    case SYS_fchmodat:
    case SYS_mkdirat:
    case SYS_readlinkat:
      return 1;
    case SYS_open:
    case SYS_stat:
    case SYS_lstat:
    case SYS_access:
    case SYS_readlink:
    case SYS_mkdir:
    case SYS_chmod:
    case SYS_rename:
    case SYS_unlink:
    case SYS_execve:
      return 0;
    default:
      return -1;
  }
}

static void note(Trace* trace, pid_t id, const struct __ptrace_syscall_info* call) {
  const int argument = pathArgument((long)call->entry.nr);
  struct iovec here = {trace->path, sizeof trace->path - 1}, there = {NULL, 0};
  trace->struck = 1;
  trace->number = (long)call->entry.nr;
  if (argument < 0) return;
  there.iov_base = (void*)(uintptr_t)call->entry.args[argument];
  /* Not past the page's end, since the next page may not be mapped. */
  there.iov_len = 4096 - ((uintptr_t)there.iov_base & 4095);
  if (there.iov_len > here.iov_len) there.iov_len = here.iov_len;
  process_vm_readv(id, &here, 1, &there, 1, 0);
}

/* A failing call is not made, except close, which always closes. */
static void fail(Tracee* tracee, const struct __ptrace_syscall_info* call, int error) {
  struct user_regs_struct registers;
  tracee->hasResult = 1;
  tracee->result = -error;
  if (call->entry.nr == SYS_close) return; /* it closes even if it fails */
  ptrace(PTRACE_GETREGS, tracee->id, NULL, &registers);
  if (call->entry.nr == SYS_brk) {
    registers.rdi = 0; /* it reports no errors: the program break stays where it is */
    tracee->hasResult = 0;
  } else {
    registers.orig_rax = (unsigned long)-1;
  }
  ptrace(PTRACE_SETREGS, tracee->id, NULL, &registers);
}

/* Notes when the child enters and leaves the library. 1 if the call is such a mark. */
static int isMark(Session* session, const Tracee* tracee,
                  const struct __ptrace_syscall_info* call) {
  const int number = (int)call->entry.args[0];
  if (tracee->id != session->child || call->entry.nr != SYS_close) return 0;
  if (number == enteringMark) session->inside = 1;
  if (number == leavingMark) session->inside = 0;
  return number == enteringMark || number == leavingMark;
}

/* Counts a call. 1 if the plan's fault is for this call. */
static int isMeant(Session* session, const Tracee* tracee) {
  const TracePlan* const plan = session->plan;
  const int isChild = tracee->id == session->child;
  const long seen = isChild ? ++session->trace->calls : ++session->trace->helperCalls;
  const int isKind =
      isChild ? plan->fault == errorAt || plan->fault == killBefore : plan->fault == errorInHelper;
  return isKind && (plan->onwards ? seen >= plan->index : seen == plan->index);
}

static void withhold(const Session* session, Tracee* tracee,
                     const struct __ptrace_syscall_info* call) {
  const int without = session->plan->without;
  if ((without & exclusiveRename) && call->entry.nr == SYS_renameat2) fail(tracee, call, EINVAL);
  if ((without & hardLinks) && call->entry.nr == SYS_linkat) fail(tracee, call, EPERM);
}

static void onCall(Session* session, Tracee* tracee, const struct __ptrace_syscall_info* call) {
  const TracePlan* const plan = session->plan;
  tracee->number = call->entry.nr;
  if (isMark(session, tracee, call) || !session->inside) return;
  if (plan->fault != killBefore && isSpared(session, call)) return;
  if (!isMeant(session, tracee)) {
    withhold(session, tracee, call);
    return;
  }
  if (!session->trace->struck) {
    session->trace->inside = *plan->inside;
    note(session->trace, tracee->id, call);
  }
  if (plan->fault == killBefore) {
    kill(session->child, SIGKILL);
  } else {
    fail(tracee, call, plan->error);
  }
}

static void onResult(Session* session, Tracee* tracee, const struct __ptrace_syscall_info* call) {
  struct user_regs_struct registers;
  if (tracee->hasResult) {
    ptrace(PTRACE_GETREGS, tracee->id, NULL, &registers);
    registers.rax = (unsigned long)tracee->result;
    ptrace(PTRACE_SETREGS, tracee->id, NULL, &registers);
    tracee->hasResult = 0;
  } else if (tracee->number == SYS_brk && tracee->id == session->child) {
    session->programBreak = (unsigned long)call->exit.rval;
  }
}

static void onStop(Session* session, pid_t id, int status) {
  struct __ptrace_syscall_info call;
  Tracee* const tracee = traceeOf(session, id);
  const int signal = WSTOPSIG(status), event = status >> 16;
  long forwarded = 0;
  if (signal == (SIGTRAP | 0x80)) {
    memset(&call, 0, sizeof call);
    ptrace(PTRACE_GET_SYSCALL_INFO, id, sizeof call, &call);
    if (call.op == PTRACE_SYSCALL_INFO_ENTRY) onCall(session, tracee, &call);
    if (call.op == PTRACE_SYSCALL_INFO_EXIT) onResult(session, tracee, &call);
  } else if (event == PTRACE_EVENT_EXEC) { /* from here on it is another program */
    forget(session, id);
    ptrace(PTRACE_DETACH, id, NULL, NULL);
    return;
  } else if (event == 0 && signal != SIGSTOP) {
    forwarded = signal;
  }
  ptrace(PTRACE_SYSCALL, id, NULL, forwarded);
}

static void endTheRest(Session* session) {
  int i;
  for (i = 0; i < session->count; ++i) {
    kill(session->tracees[i].id, SIGKILL);
    waitpid(session->tracees[i].id, NULL, __WALL);
  }
}

int traceChild(pid_t child, const TracePlan* plan, Trace* trace, const volatile int* late) {
  Session session = {plan, trace, child, 0, 0, {{0, 0, 0, 0}}, 0};
  int status = 0;
  memset(trace, 0, sizeof *trace);
  session.programBreak =
      (unsigned long)(uintptr_t)sbrk(0); /* the child is a copy of this process */
  if (waitpid(child, &status, __WALL) != child || !WIFSTOPPED(status)) return status;
  ptrace(PTRACE_SETOPTIONS, child, NULL,
         PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL | PTRACE_O_TRACEFORK | PTRACE_O_TRACEVFORK |
             PTRACE_O_TRACECLONE | PTRACE_O_TRACEEXEC);
  traceeOf(&session, child);
  ptrace(PTRACE_SYSCALL, child, NULL, 0);
  while (!*late) {
    const pid_t id = waitpid(-1, &status, __WALL);
    if (id < 0 && errno == EINTR) continue;
    if (id < 0) return -1;
    if (WIFSTOPPED(status)) {
      onStop(&session, id, status);
      continue;
    }
    forget(&session, id);
    if (id == child) {
      endTheRest(&session);
      return status;
    }
  }
  endTheRest(&session);
  return -1;
}
