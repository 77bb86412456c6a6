#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string_view>

/// A short row of bytes by value: a request, a command, a set of start bytes. No scale here takes
/// more than 12 at once; what goes beyond the capacity is not taken.
class Bytes {
 public:
  static constexpr std::size_t kCapacity = 16;

  constexpr Bytes() = default;
  constexpr Bytes(std::initializer_list<std::uint8_t> bytes) {
    for (const std::uint8_t byte : bytes) add(byte);
  }
  /// The characters of an ASCII command.
  constexpr Bytes(std::string_view text) {
    for (const char c : text) add(static_cast<std::uint8_t>(c));
  }
  constexpr Bytes(const char* text) : Bytes(std::string_view(text)) {}

  constexpr void add(std::uint8_t byte) {
    if (size_ < kCapacity) data_[size_++] = byte;
  }
  constexpr void add(std::span<const std::uint8_t> bytes) {
    for (const std::uint8_t byte : bytes) add(byte);
  }

  constexpr const std::uint8_t* data() const { return data_.data(); }
  constexpr std::size_t size() const { return size_; }
  constexpr bool empty() const { return size_ == 0; }
  constexpr bool contains(std::uint8_t byte) const {
    for (const std::uint8_t own : view()) {
      if (own == byte) return true;
    }
    return false;
  }
  constexpr std::span<const std::uint8_t> view() const { return {data_.data(), size_}; }

 private:
  std::array<std::uint8_t, kCapacity> data_ = {};
  std::size_t size_ = 0;
};
