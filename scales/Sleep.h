#pragma once

/// Blocks the calling thread for that many milliseconds; a signal of the host doesn't shorten it.
void orbSleep_mSec(int ms);
