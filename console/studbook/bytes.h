#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>

namespace spx::console {

/// Bytes that do not hold what they should.
class BadBytes : public std::runtime_error {
 public:
  BadBytes() : std::runtime_error("the bytes are damaged") {}
};

/// Values one after the other. Machines of the other byte order read other values, as checkSum()
/// tells.
class ByteWriter {
 public:
  /// A value as memory has it.
  template <typename Value>
  void fixed(Value value) {
    static_assert(std::is_arithmetic_v<Value>);
    char bytes[sizeof value];
    std::memcpy(bytes, &value, sizeof value);
    bytes_.append(bytes, sizeof value);
  }

  /// A number that is small as a rule: seven bits a byte, the lowest first.
  void number(std::uint64_t value) {
    for (; value >= GOES_ON; value >>= 7) {
      bytes_ += static_cast<char>(value % GOES_ON | GOES_ON);
    }
    bytes_ += static_cast<char>(value);
  }

  void text(std::string_view value) {
    number(value.size());
    bytes_ += value;
  }

  const std::string& bytes() const { return bytes_; }

 private:
  static constexpr std::uint64_t GOES_ON = 0x80;
  std::string bytes_;
};

/// Reads them again. All calls throw BadBytes when there is nothing of that kind.
class ByteReader {
 public:
  /// @param bytes  must outlive the reader and the texts that it gives
  explicit ByteReader(std::string_view bytes) : bytes_(bytes) {}

  bool atEnd() const { return bytes_.empty(); }

  template <typename Value>
  Value fixed() {
    Value value;
    std::memcpy(&value, take(sizeof value).data(), sizeof value);
    return value;
  }

  std::uint64_t number() {
    std::uint64_t value = 0;
    for (unsigned shift = 0; shift < 64; shift += 7) {
      const auto byte = fixed<std::uint8_t>();
      value |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
      if (byte < 0x80) {
        return value;
      }
    }
    throw BadBytes();
  }

  /// A number below a limit.
  std::uint64_t numberBelow(std::uint64_t limit) {
    const std::uint64_t value = number();
    if (value >= limit) {
      throw BadBytes();
    }
    return value;
  }

  std::string_view text() { return take(number()); }

 private:
  std::string_view take(std::uint64_t size) {
    if (size > bytes_.size()) {
      throw BadBytes();
    }
    const std::string_view taken = bytes_.substr(0, size);
    bytes_.remove_prefix(size);
    return taken;
  }

  std::string_view bytes_;
};

/// A sum that tells whether bytes are still those that were written, and in their place.
/// @param place  a number that belongs to the place
inline std::uint64_t checkSum(std::string_view bytes, std::uint64_t place) {
  constexpr std::uint64_t FACTOR = 0x9E3779B97F4A7C15;
  std::uint64_t sum = (place + bytes.size()) * FACTOR;
  for (std::size_t at = 0; at < bytes.size(); at += sizeof sum) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes.data() + at, std::min(sizeof word, bytes.size() - at));
    sum = (sum ^ word) * FACTOR;
    sum ^= sum >> 32;
  }
  return sum;
}

}  // namespace spx::console
