/// Answers as the kernel gives them over netlink, and what stands for the kernel.
#pragma once

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/netlink.h"

namespace velmora::os::test {

using ByteVector = std::vector<std::uint8_t>;

inline void Pad(ByteVector& bytes) { bytes.resize((bytes.size() + 3) / 4 * 4); }

template <class Record>
ByteVector BytesOf(const Record& record) {
  ByteVector bytes(sizeof record);
  std::memcpy(bytes.data(), &record, sizeof record);
  return bytes;
}

inline ByteVector BytesOf(const std::string& text) { return {text.begin(), text.end()}; }

/// Attributes one behind the other.
class Attributes {
 public:
  Attributes& Put(std::uint16_t type, const ByteVector& value) {
    const auto length = static_cast<std::uint16_t>(value.size() + 4);
    for (const std::uint16_t number : {length, type}) {
      const ByteVector head = BytesOf(number);
      bytes_.insert(bytes_.end(), head.begin(), head.end());
    }
    bytes_.insert(bytes_.end(), value.begin(), value.end());
    Pad(bytes_);
    return *this;
  }
  Attributes& Put(std::uint16_t type, const Attributes& nested) {
    constexpr std::uint16_t kNested = 0x8000;
    return Put(static_cast<std::uint16_t>(type | kNested), nested.bytes_);
  }
  Attributes& Text(std::uint16_t type, const std::string& text) { return Put(type, BytesOf(text + '\0')); }
  template <class Value>
  Attributes& Number(std::uint16_t type, Value value) {
    return Put(type, BytesOf(value));
  }
  const ByteVector& Bytes() const { return bytes_; }

 private:
  ByteVector bytes_;
};

/// A message with a record and attributes.
template <class Record>
ByteVector Message(std::uint16_t type, const Record& record, const Attributes& attributes = {}) {
  ByteVector payload = BytesOf(record);
  Pad(payload);
  payload.insert(payload.end(), attributes.Bytes().begin(), attributes.Bytes().end());
  struct {
    std::uint32_t length;
    std::uint16_t type, flags;
    std::uint32_t sequence, sender;
  } head{static_cast<std::uint32_t>(payload.size() + 16), type, 0, 0, 0};
  ByteVector message = BytesOf(head);
  message.insert(message.end(), payload.begin(), payload.end());
  Pad(message);
  return message;
}

inline ByteVector operator+(ByteVector left, const ByteVector& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

/// Answers each question by its type and the first byte behind its header: a family of addresses, or a
/// command.
class FakeKernel : public Netlink {
 public:
  void Answer(std::uint16_t type, std::uint8_t command, ByteVector answer) {
    answers_[{type, command}] = std::move(answer);
  }
  void Fail(std::uint16_t type, std::uint8_t command, int error) { errors_[{type, command}] = error; }

  std::optional<ByteVector> Ask(const NetlinkRequest& request) override {
    const ByteVector bytes = request.Encode(1);
    velmora::os::Bytes rest = bytes;
    const auto message = TakeMessage(rest);
    const std::pair<std::uint16_t, std::uint8_t> key{message->type, message->payload[0]};
    if (const auto error = errors_.find(key); error != errors_.end()) {
      errno = error->second;
      return std::nullopt;
    }
    return answers_[key];
  }

 private:
  std::map<std::pair<std::uint16_t, std::uint8_t>, ByteVector> answers_;
  std::map<std::pair<std::uint16_t, std::uint8_t>, int> errors_;
};

}  // namespace velmora::os::test
