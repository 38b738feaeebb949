#include "simulator/listing.h"

#include <algorithm>
#include <iterator>
#include <span>

#include "platform/unicode.h"
#include "simulator/failing.h"
#include "simulator/file_tree.h"

using velmora::os::FindData;
using velmora::os::FolderEntry;

namespace simulator {
namespace {

/// A link is one, and a folder as well when it leads to one.
std::uint32_t AttributesOf(Machine& machine, const File& file) {
  const File* target = file.link_target ? FindFile(machine, file.path) : nullptr;
  const bool is_folder = target != nullptr ? target->folder : file.folder;
  return (is_folder ? velmora::os::kFileAttributeDirectory : 0) |
         (file.link_target ? velmora::os::kFileAttributeReparsePoint : 0);
}

Entry EntryOf(Machine& machine, const File& file) {
  return {.name = std::string(NameOf(file.path)),
          .attributes = AttributesOf(machine, file),
          .last_write_time = {static_cast<std::uint32_t>(file.last_write_time),
                              static_cast<std::uint32_t>(file.last_write_time >> 32)}};
}

void Put(const Entry& entry, FindData& data) { data = {.attributes = entry.attributes}; }
void Put(const Entry& entry, FolderEntry& data) {
  data = {.attributes = entry.attributes, .last_write_time = entry.last_write_time};
}

void PutName(const std::string& name, std::span<char> field) {
  std::ranges::copy(name.substr(0, field.size() - 1), field.begin());
}
void PutName(const std::string& name, std::span<wchar_t> field) {
  std::ranges::copy(velmora::unicode::WideFromUtf8(name).substr(0, field.size() - 1), field.begin());
}

template <class Data>
bool PutNextOf(Listing& listing, Fault fault, Data& data) {
  if (listing.next == listing.entries.size()) return Succeed(kNoMoreFiles);
  const Entry& entry = listing.entries[listing.next++];
  Put(entry, data);
  const bool is_spoiled = fault == Fault::kUnterminated;
  PutName(is_spoiled ? std::string(std::size(data.name), 'A') : entry.name, data.name);
  return true;
}

}  // namespace

std::vector<Entry> ReadEntries(Machine& machine, std::string_view path) {
  std::vector<Entry> entries{{.name = "."}, {.name = ".."}};
  for (const File* file : ListFolder(machine, path)) entries.push_back(EntryOf(machine, *file));
  return entries;
}

bool PutNext(Listing& listing, Fault fault, FindData& data) { return PutNextOf(listing, fault, data); }
bool PutNext(Listing& listing, Fault fault, FolderEntry& data) { return PutNextOf(listing, fault, data); }

}  // namespace simulator
