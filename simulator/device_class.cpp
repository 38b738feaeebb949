#include "simulator/device_class.h"

#include <cstdlib>
#include <cstring>
#include <string>

#include "platform/unicode.h"
#include "simulator/session.h"

namespace simulator {
namespace {

using velmora::hal::kTableHeadSize;

bool Put(const void* bytes, std::size_t size, std::span<unsigned char> buffer, unsigned int* returned_size) {
  if (size > buffer.size()) return false;
  std::memcpy(buffer.data(), bytes, size);
  if (returned_size != nullptr) *returned_size = static_cast<unsigned int>(size);
  return true;
}

/// Text is cut to what the buffer holds beside its terminating zero.
template <class Character>
bool PutText(const std::basic_string<Character>& text, std::span<unsigned char> buffer,
             unsigned int* returned_size) {
  const std::size_t places = buffer.size() / sizeof(Character);
  if (places == 0) return false;
  const std::basic_string<Character> cut = text.substr(0, places - 1);
  return Put(cut.c_str(), (cut.size() + 1) * sizeof(Character), buffer, returned_size);
}

/// Writes one kind of answer.
struct Writer {
  std::span<unsigned char> buffer;
  unsigned int* returned_size;

  bool operator()(const Refused&) const { return false; }
  bool operator()(const Narrow& narrow) const { return PutText(narrow.text, buffer, returned_size); }
  bool operator()(const Wide& wide) const {
    return PutText(velmora::unicode::Utf16FromUtf8(wide.text), buffer, returned_size);
  }
  bool operator()(const Record& record) const {
    return Put(record.bytes.data(), record.bytes.size(), buffer, returned_size);
  }
  bool operator()(std::uint32_t number) const { return Put(&number, sizeof number, buffer, returned_size); }
  bool operator()(std::uint64_t number) const { return Put(&number, sizeof number, buffer, returned_size); }
};

}  // namespace

std::optional<std::uint32_t> HandedOutTable::EntryAt(const void* address) const {
  const auto first = reinterpret_cast<std::uintptr_t>(begin) + kTableHeadSize;
  const auto at = reinterpret_cast<std::uintptr_t>(address);
  if (at < first || (at - first) % entry_size != 0 || (at - first) / entry_size >= count) return std::nullopt;
  return static_cast<std::uint32_t>((at - first) / entry_size);
}

Information NarrowOrRefused(const Text& text) {
  if (!text) return Refused{};
  return Narrow{*text};
}

Information WideOrRefused(const Text& text) {
  if (!text) return Refused{};
  return Wide{*text};
}

void* MakeTable(std::size_t count, std::size_t entry_size) {
  const std::size_t size = kTableHeadSize + count * entry_size;
  auto* table = static_cast<char*>(std::calloc(1, size));
  if (table == nullptr) return nullptr;
  const auto entries = static_cast<std::uint32_t>(count);
  std::memcpy(table + velmora::hal::kFailingDriverCountAt, &entries, sizeof entries);
  return table;
}

bool WriteInformation(const Information& information, std::span<unsigned char> buffer,
                      unsigned int* returned_size) {
  return std::visit(Writer{buffer, returned_size}, information);
}

}  // namespace simulator
