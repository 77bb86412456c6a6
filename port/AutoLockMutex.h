#pragma once

#include <pthread.h>

/// Holds a mutex for the length of a scope.
class CAutoLockMutex {
 public:
  explicit CAutoLockMutex(pthread_mutex_t* mutex);
  virtual ~CAutoLockMutex();
  CAutoLockMutex(const CAutoLockMutex&) = delete;
  CAutoLockMutex& operator=(const CAutoLockMutex&) = delete;

  /// Makes a mutex of recursive type.
  static void MutexInit(pthread_mutex_t* mutex);
  static void MutexDelete(pthread_mutex_t* mutex);

 private:
  pthread_mutex_t* mutex_;
};
