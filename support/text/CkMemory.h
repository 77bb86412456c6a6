#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

/// A block of bytes on the heap with one owner.
using CkBlock = std::unique_ptr<unsigned char[]>;

/// A new block of `n` bytes with undefined content. Null if memory is short; never throws.
CkBlock ckNewUnsignedChar(std::size_t n) noexcept;

/// How often the support layers of this process have found no memory. Whoever sees it unchanged
/// over a conversion that failed knows that the text was to blame, not the memory.
std::uint32_t ckMemoryShortages() noexcept;
/// For those who ask for memory by other means than ckNewUnsignedChar().
void ckNoteMemoryShortage() noexcept;

/// Overwrites memory with zeros. The compiler may not leave this out, also not right before the
/// memory is freed.
void ckWipe(void* p, std::size_t n) noexcept;

/// The one place where buffers free a block of `n` bytes: what a secure one frees is wiped whole,
/// since bytes that were in use before lie behind those that are.
inline void ckFreeBlock(CkBlock block, std::size_t n, bool secure) noexcept {
  if (secure) ckWipe(block.get(), n);
}

/// Sizes of buffers are kept in 32 bits: true if this one doesn't fit.
constexpr bool ck64_TooBigForUnsigned32(std::uint64_t n) { return n > 0xFFFFFFFFU; }
