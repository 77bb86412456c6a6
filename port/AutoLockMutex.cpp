#include "AutoLockMutex.h"

CAutoLockMutex::CAutoLockMutex(pthread_mutex_t* mutex) : mutex_(mutex) {
  pthread_mutex_lock(mutex_);
}

CAutoLockMutex::~CAutoLockMutex() { pthread_mutex_unlock(mutex_); }

void CAutoLockMutex::MutexInit(pthread_mutex_t* mutex) {
  pthread_mutexattr_t attributes;
  pthread_mutexattr_init(&attributes);
  pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
  pthread_mutex_init(mutex, &attributes);
  pthread_mutexattr_destroy(&attributes);
}

void CAutoLockMutex::MutexDelete(pthread_mutex_t* mutex) { pthread_mutex_destroy(mutex); }
