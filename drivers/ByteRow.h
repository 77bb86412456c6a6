#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string_view>

/// A short row of bytes by value: a request, a command, a set of start bytes. One that is too long
/// for it doesn't compile.
class ByteRow {
 public:
  static constexpr std::size_t kCapacity = 16;

  constexpr ByteRow() = default;
  consteval ByteRow(std::initializer_list<std::uint8_t> bytes) {
    for (const std::uint8_t byte : bytes) data_.at(size_++) = byte;
  }
  /// The characters of an ASCII command.
  consteval ByteRow(const char* text) {
    for (const char c : std::string_view(text)) data_.at(size_++) = static_cast<std::uint8_t>(c);
  }

  /// What goes beyond the capacity is not taken.
  constexpr void add(std::uint8_t byte) {
    if (size_ < kCapacity) data_[size_++] = byte;
  }

  constexpr const std::uint8_t* data() const { return data_.data(); }
  constexpr std::size_t size() const { return size_; }
  constexpr bool empty() const { return size_ == 0; }
  constexpr bool contains(std::uint8_t byte) const {
    return std::ranges::find(view(), byte) != view().end();
  }
  constexpr std::span<const std::uint8_t> view() const { return {data_.data(), size_}; }

  constexpr bool operator==(const ByteRow&) const = default;

 private:
  std::array<std::uint8_t, kCapacity> data_ = {};
  std::size_t size_ = 0;
};
