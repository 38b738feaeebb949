#include "ostrine/common/disk_descriptor.h"

#include <algorithm>
#include <cstddef>

#include "ostrine/common/disk_rules.h"

namespace ostrine {
namespace {

using Bytes = std::span<const std::uint8_t>;

/// Number of `width` bytes at `offset`, lowest byte first; 0 where it does not lie within the bytes.
std::uint64_t Little(Bytes bytes, std::size_t offset, std::size_t width) {
  if (offset > bytes.size() || width > bytes.size() - offset) return 0;
  std::uint64_t value = 0;
  for (std::size_t i = width; i-- > 0;) value = value << 8 | bytes[offset + i];
  return value;
}

std::string_view Characters(Bytes bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// Text whose two characters in each word stand the wrong way round.
std::string Turned(std::string_view text) {
  std::string turned(text);
  for (std::size_t i = 1; i < turned.size(); i += 2) std::swap(turned[i - 1], turned[i]);
  return turned;
}

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

/// The printable characters that pairs of hexadecimal digits stand for; nothing if anything else is there.
std::optional<std::string> FromHex(std::string_view digits) {
  std::string text;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
    const int high = HexDigit(digits[i]);
    const int low = HexDigit(digits[i + 1]);
    if (high < 0 || low < 0) return std::nullopt;
    const int character = high * 16 + low;
    if (character < ' ' || character > '~') return std::nullopt;
    text.push_back(static_cast<char>(character));
  }
  return text;
}

/// Payload of a SCSI page of vital product data: type, page number, length, highest byte first.
std::optional<Bytes> PagePayload(Bytes page, std::uint8_t number) {
  constexpr std::size_t kHeadSize = 4;
  if (page.size() < kHeadSize || page[1] != number) return std::nullopt;
  const std::size_t length = static_cast<std::size_t>(page[2]) << 8 | page[3];
  if (length > page.size() - kHeadSize) return std::nullopt;
  return page.subspan(kHeadSize, length);
}

}  // namespace

std::optional<DiskIdentity> ParseAtaIdentity(Bytes data) {
  constexpr std::size_t kSize = 512;
  if (data.size() < kSize) return std::nullopt;
  const auto field = [&](std::size_t offset, std::size_t length) {
    return CleanDiskText(Turned(Characters(data.subspan(offset, length))));
  };
  return DiskIdentity{.model = field(54, 40), .serial = field(20, 20), .firmware = field(46, 8)};
}

std::optional<DiskIdentity> ParseAtaInformationPage(Bytes page) {
  constexpr std::size_t kIdentityOffset = 56;
  const auto payload = PagePayload(page, 0x89);
  if (!payload || payload->size() < kIdentityOffset) return std::nullopt;
  return ParseAtaIdentity(payload->subspan(kIdentityOffset));
}

std::optional<std::string> ParseSerialNumberPage(Bytes page) {
  const auto payload = PagePayload(page, 0x80);
  if (!payload) return std::nullopt;
  return CleanDiskText(Characters(*payload));
}

std::optional<StorageDescriptor> ParseStorageDescriptor(Bytes descriptor) {
  constexpr std::size_t kFixedSize = 36;
  if (descriptor.size() < kFixedSize) return std::nullopt;
  // The descriptor's own size may be that of a longer one, of which only this much was given.
  const auto stated = static_cast<std::size_t>(Little(descriptor, 4, 4));
  const Bytes bytes = descriptor.first(std::min(stated, descriptor.size()));
  if (bytes.size() < kFixedSize) return std::nullopt;
  const auto text = [&](std::size_t offset_at) -> std::string_view {
    const auto offset = static_cast<std::size_t>(Little(bytes, offset_at, 4));
    // An offset of 0, or of all ones, says that there is no text.
    if (offset < kFixedSize || offset >= bytes.size()) return {};
    const std::string_view rest = Characters(bytes.subspan(offset));
    return rest.substr(0, rest.find('\0'));
  };
  return StorageDescriptor{
      .device_type = bytes[8],
      .has_removable_medium = bytes[10] != 0,
      .bus_type = static_cast<std::uint32_t>(Little(bytes, 28, 4)),
      .identity = {.vendor = CleanDiskText(text(12)),
                   .model = CleanDiskText(text(16)),
                   .serial = ReadableSerial(text(24)),
                   .firmware = CleanDiskText(text(20))},
  };
}

std::string ReadableSerial(std::string_view text) {
  constexpr std::size_t kCodedLength = 40;
  std::string clean = CleanDiskText(text);
  if (clean.size() != kCodedLength) return clean;
  const auto decoded = FromHex(clean);
  return decoded ? CleanDiskText(Turned(*decoded)) : clean;
}

std::vector<VolumeExtent> ParseVolumeExtents(Bytes extents) {
  constexpr std::size_t kHeadSize = 8;
  constexpr std::size_t kExtentSize = 24;
  constexpr std::size_t kLengthOffset = 16;
  if (extents.size() < kHeadSize) return {};
  const std::uint64_t held = (extents.size() - kHeadSize) / kExtentSize;
  const std::uint64_t count = std::min(Little(extents, 0, 4), held);
  std::vector<VolumeExtent> list;
  for (std::size_t i = 0; i < count; ++i) {
    const Bytes extent = extents.subspan(kHeadSize + i * kExtentSize, kExtentSize);
    const std::uint64_t length = Little(extent, kLengthOffset, 8);
    if (length >> 63 != 0) continue;
    list.push_back({.disk = static_cast<std::uint32_t>(Little(extent, 0, 4)), .length = length});
  }
  return list;
}

}  // namespace ostrine
