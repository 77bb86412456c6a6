#pragma once

#include <cxxabi.h>
#include <pthread.h>
#include <unwind.h>

#include <utility>

// A thread of the host may be cancelled (pthread_cancel) inside a call. glibc ends it by an
// unwinding that runs destructors and ends in no handler: a `catch (...)` that keeps it, or a
// function that is noexcept, aborts the process. So nobody but unlessThrown() catches everything.

// glibc unwinds by the host's libgcc_s, with the handlers of the libgcc that is linked in here: its
// register table must stand, which the first walk of a stack fills.
inline const _Unwind_Reason_Code kUnwinderIsReady =
    _Unwind_Backtrace([](_Unwind_Context*, void*) { return _URC_END_OF_STACK; }, nullptr);

/// What `work` gives, or, if it throws, what `otherwise` gives. A thread's end passes through.
/// There is no object behind the reference that catches it, which the sanitizers must let pass.
template <typename Work, typename Otherwise>
__attribute__((no_sanitize("undefined"))) auto unlessThrown(Work&& work, Otherwise&& otherwise)
    -> decltype(work()) {
  try {
    return std::forward<Work>(work)();
  } catch (abi::__forced_unwind&) {
    throw;
  } catch (...) {
    return std::forward<Otherwise>(otherwise)();
  }
}

/// While it lives, a cancellation of the thread waits. For what waits or does input and output in
/// a destructor, which is noexcept.
class CancellationHeld {
 public:
  CancellationHeld() noexcept { pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &m_before); }
  CancellationHeld(const CancellationHeld&) = delete;
  CancellationHeld& operator=(const CancellationHeld&) = delete;
  ~CancellationHeld() { pthread_setcancelstate(m_before, nullptr); }

 private:
  int m_before = PTHREAD_CANCEL_ENABLE;
};
