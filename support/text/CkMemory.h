#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

/// A block of bytes on the heap with one owner.
using CkBlock = std::unique_ptr<unsigned char[]>;

/// A new block of `n` bytes with undefined content. Null if memory is short; never throws.
CkBlock ckNewUnsignedChar(std::size_t n) noexcept;

/// Overwrites memory with zeros. The compiler may not leave this out, also not right before the
/// memory is freed.
void ckWipe(void* p, std::size_t n) noexcept;

/// Sizes of buffers are kept in 32 bits: true if this one doesn't fit.
constexpr bool ck64_TooBigForUnsigned32(std::uint64_t n) { return n > 0xFFFFFFFFU; }
