#include "Sleep.h"

#include <unistd.h>

void orbSleep_mSec(int ms) {
  // The product wraps at 32 bits.
  ::usleep(static_cast<unsigned>(ms) * 1000U);
}
