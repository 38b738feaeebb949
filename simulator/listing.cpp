#include "simulator/listing.h"

#include <algorithm>
#include <iterator>
#include <span>

#include "platform/unicode.h"
#include "simulator/failing.h"
#include "simulator/file_tree.h"

using velmora::os::FileTime;
using velmora::os::FindData;

namespace simulator {
namespace {

constexpr std::uint32_t kFileAttributeArchive = 0x20;

/// A link has the attributes of what it points to, and that it is one.
std::uint32_t AttributesOf(Machine& machine, const File& file) {
  const File* target = file.link_target ? FindFile(machine, file.path) : nullptr;
  const File& described = target != nullptr ? *target : file;
  std::uint32_t attributes = described.folder ? velmora::os::kFileAttributeDirectory : kFileAttributeArchive;
  if (described.read_only) attributes |= velmora::os::kFileAttributeReadOnly;
  if (file.link_target) attributes |= velmora::os::kFileAttributeReparsePoint;
  return attributes;
}

Entry EntryOf(Machine& machine, const File& file) {
  return {.name = std::string(NameOf(file.path)),
          .attributes = AttributesOf(machine, file),
          .creation_time = FileTimeOf(file.creation_time),
          .last_access_time = FileTimeOf(file.last_access_time),
          .last_write_time = FileTimeOf(file.last_write_time),
          .size = SizeOf(file)};
}

void PutName(const std::string& name, std::span<char> field) {
  std::ranges::copy(name.substr(0, field.size() - 1), field.begin());
}
void PutName(const std::string& name, std::span<wchar_t> field) {
  std::ranges::copy(velmora::unicode::WideFromUtf8(name).substr(0, field.size() - 1), field.begin());
}

template <class Character>
bool PutNextOf(Listing& listing, Fault fault, FindData<Character>& data) {
  if (listing.next == listing.entries.size()) return Succeed(kNoMoreFiles);
  const Entry& entry = listing.entries[listing.next++];
  data = {.attributes = entry.attributes,
          .creation_time = entry.creation_time,
          .last_access_time = entry.last_access_time,
          .last_write_time = entry.last_write_time,
          .size = entry.size};
  const bool is_spoiled = fault == Fault::kUnterminated;
  PutName(is_spoiled ? std::string(std::size(data.name), 'A') : entry.name, data.name);
  return true;
}

}  // namespace

FileTime FileTimeOf(std::uint64_t units) {
  return {static_cast<std::uint32_t>(units), static_cast<std::uint32_t>(units >> 32)};
}

std::vector<Entry> ReadEntries(Machine& machine, std::string_view path) {
  std::vector<Entry> entries{{.name = "."}, {.name = ".."}};
  for (const File* file : ListFolder(machine, path)) entries.push_back(EntryOf(machine, *file));
  return entries;
}

bool PutNext(Listing& listing, Fault fault, FindData<char>& data) { return PutNextOf(listing, fault, data); }
bool PutNext(Listing& listing, Fault fault, FindData<wchar_t>& data) {
  return PutNextOf(listing, fault, data);
}

}  // namespace simulator
