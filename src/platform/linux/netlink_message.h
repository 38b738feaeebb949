/// Messages of the kernel's netlink interface, as bytes. Pure: every length is compared with what is left.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace velmora::os {

using Bytes = std::span<const std::uint8_t>;

/// One message; `whole` is the message with its header.
struct NetlinkMessage {
  std::uint16_t type = 0;
  std::uint16_t flags = 0;
  std::uint32_t sequence = 0;
  Bytes payload;
  Bytes whole;
};

struct NetlinkAttribute {
  std::uint16_t type = 0;  ///< without the marks of nesting and byte order
  Bytes value;
};

/// Takes the next message, or attribute, off the front of `bytes`. Nothing when what is left does not begin
/// with a whole one; `bytes` then stay as they are.
std::optional<NetlinkMessage> TakeMessage(Bytes& bytes) noexcept;
std::optional<NetlinkAttribute> TakeAttribute(Bytes& bytes) noexcept;

/// Takes `Record` off the front of `bytes`, and what fills it up to a multiple of four; nothing when they are
/// fewer.
template <class Record>
std::optional<Record> TakeRecord(Bytes& bytes) noexcept {
  static_assert(std::is_trivially_copyable_v<Record>);
  constexpr std::size_t kAligned = (sizeof(Record) + 3) & ~std::size_t{3};
  if (sizeof(Record) > bytes.size()) return std::nullopt;
  Record record;
  std::memcpy(&record, bytes.data(), sizeof record);
  bytes = bytes.subspan(kAligned < bytes.size() ? kAligned : bytes.size());
  return record;
}

/// The value of the first attribute of that type; nothing when there is none.
std::optional<Bytes> FindAttribute(Bytes attributes, std::uint16_t type) noexcept;

/// The same as a number of exactly that size, or as a record at whose beginning the value stands.
template <class Number>
std::optional<Number> FindNumber(Bytes attributes, std::uint16_t type) noexcept {
  auto value = FindAttribute(attributes, type);
  return value && value->size() == sizeof(Number) ? TakeRecord<Number>(*value) : std::nullopt;
}

/// The same as text: up to its first zero. Empty when there is none.
std::string FindText(Bytes attributes, std::uint16_t type);

/// What is asked for: one thing, or all that there are.
enum class Extent { kOne, kAll };

/// A request in the making.
class NetlinkRequest {
 public:
  /// `header`: the record that stands before the attributes.
  template <class Record>
  NetlinkRequest(std::uint16_t type, Extent extent, const Record& header) : NetlinkRequest(type, extent) {
    static_assert(std::is_trivially_copyable_v<Record>);
    Append(&header, sizeof header);
  }
  void PutNumber(std::uint16_t type, std::uint32_t value) { Put(type, &value, sizeof value); }
  void PutText(std::uint16_t type, const std::string& text) { Put(type, text.c_str(), text.size() + 1); }

  /// The bytes, with their length and `sequence` in the header.
  std::vector<std::uint8_t> Encode(std::uint32_t sequence) const;

 private:
  NetlinkRequest(std::uint16_t type, Extent extent);
  void Put(std::uint16_t type, const void* value, std::size_t size);
  void Append(const void* data, std::size_t size);

  std::vector<std::uint8_t> bytes_;
};

}  // namespace velmora::os
