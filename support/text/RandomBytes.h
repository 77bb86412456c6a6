#pragma once

class DataBuffer;

/// Appends `n` random bytes; false if there is no memory or no source of them.
bool appendRandomBytes(int n, DataBuffer& out);
