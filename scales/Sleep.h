#pragma once

/// Blocks the calling thread for that many milliseconds.
void orbSleep_mSec(int ms);
