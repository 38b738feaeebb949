#include "platform/linux/netlink_message.h"

#include <linux/netlink.h>

#include <algorithm>

namespace velmora::os {
namespace {

constexpr std::size_t Aligned(std::size_t size) noexcept { return (size + 3) & ~std::size_t{3}; }

/// What follows the first `size` bytes and their filling.
Bytes After(Bytes bytes, std::size_t size) noexcept {
  return bytes.subspan(std::min(Aligned(size), bytes.size()));
}

}  // namespace

std::optional<NetlinkMessage> TakeMessage(Bytes& bytes) noexcept {
  nlmsghdr header{};
  if (sizeof header > bytes.size()) return std::nullopt;
  std::memcpy(&header, bytes.data(), sizeof header);
  if (header.nlmsg_len < sizeof header || header.nlmsg_len > bytes.size()) return std::nullopt;
  const Bytes whole = bytes.first(header.nlmsg_len);
  bytes = After(bytes, header.nlmsg_len);
  return NetlinkMessage{header.nlmsg_type, header.nlmsg_flags, header.nlmsg_seq, whole.subspan(sizeof header),
                        whole};
}

std::optional<NetlinkAttribute> TakeAttribute(Bytes& bytes) noexcept {
  nlattr header{};
  if (sizeof header > bytes.size()) return std::nullopt;
  std::memcpy(&header, bytes.data(), sizeof header);
  if (header.nla_len < sizeof header || header.nla_len > bytes.size()) return std::nullopt;
  const Bytes value = bytes.subspan(sizeof header, header.nla_len - sizeof header);
  bytes = After(bytes, header.nla_len);
  return NetlinkAttribute{static_cast<std::uint16_t>(header.nla_type & NLA_TYPE_MASK), value};
}

std::optional<Bytes> FindAttribute(Bytes attributes, std::uint16_t type) noexcept {
  while (const auto attribute = TakeAttribute(attributes)) {
    if (attribute->type == type) return attribute->value;
  }
  return std::nullopt;
}

std::string FindText(Bytes attributes, std::uint16_t type) {
  const auto value = FindAttribute(attributes, type);
  if (!value) return {};
  return {value->begin(), std::find(value->begin(), value->end(), std::uint8_t{0})};
}

NetlinkRequest::NetlinkRequest(std::uint16_t type, Extent extent) {
  nlmsghdr header{};
  header.nlmsg_type = type;
  // Of one thing the end is not told unless that is asked for; of all it always is.
  header.nlmsg_flags =
      static_cast<std::uint16_t>(NLM_F_REQUEST | (extent == Extent::kAll ? NLM_F_DUMP : NLM_F_ACK));
  Append(&header, sizeof header);
}

std::vector<std::uint8_t> NetlinkRequest::Encode(std::uint32_t sequence) const {
  std::vector<std::uint8_t> bytes = bytes_;
  nlmsghdr header{};
  std::memcpy(&header, bytes.data(), sizeof header);
  header.nlmsg_len = static_cast<std::uint32_t>(bytes.size());
  header.nlmsg_seq = sequence;
  std::memcpy(bytes.data(), &header, sizeof header);
  return bytes;
}

void NetlinkRequest::Put(std::uint16_t type, const void* value, std::size_t size) {
  nlattr header{};
  header.nla_type = type;
  header.nla_len = static_cast<std::uint16_t>(sizeof header + size);
  Append(&header, sizeof header);
  Append(value, size);
}

void NetlinkRequest::Append(const void* data, std::size_t size) {
  const auto* first = static_cast<const std::uint8_t*>(data);
  bytes_.insert(bytes_.end(), first, first + size);
  bytes_.resize(Aligned(bytes_.size()));
}

}  // namespace velmora::os
