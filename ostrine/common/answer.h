/// The caller's buffer that a query fills: the one place where an answer is written, and bounded.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace ostrine {

/// A query answers with exactly one call. Each returns whether the answer fitted and was written; on success
/// the returned size, where the caller gave a place for it, is the number of bytes written.
class Answer {
 public:
  /// `buffer` has `size` bytes of any alignment. A null buffer has none, whatever `size` says.
  Answer(void* buffer, unsigned int size, unsigned int* returned_size)
      : buffer_(static_cast<std::uint8_t*>(buffer), buffer == nullptr ? 0 : size),
        returned_size_(returned_size) {}

  /// Bytes that the caller has room for. Some ids give one of two records by it.
  std::size_t Size() const { return buffer_.size(); }

  /// Text in the system's narrow code page with its terminating zero, cut between two characters where it is
  /// too long. Needs one byte.
  bool NarrowText(std::string_view text);

  /// Text as UTF-16 little-endian with its terminating zero, cut between two characters where it is too long.
  /// Needs two bytes.
  bool WideText(std::u16string_view text);

  /// Little-endian number of four bytes.
  bool Number(std::uint32_t number);

  /// Little-endian number of eight bytes.
  bool LongNumber(std::uint64_t number);

  /// A record, never in part.
  bool Record(std::span<const std::uint8_t> record);

 private:
  bool Unsigned(std::uint64_t number, std::size_t width);
  void Written(std::size_t size);

  std::span<std::uint8_t> buffer_;
  unsigned int* returned_size_;
};

}  // namespace ostrine
