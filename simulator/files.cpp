/// The os contract about files over a machine's tree.
#include "platform/os/files.h"

#include <algorithm>
#include <cstring>
#include <span>

#include "platform/text_search.h"
#include "platform/unicode.h"
#include "simulator/failing.h"
#include "simulator/file_tree.h"

using simulator::Closing;
using simulator::Entered;
using simulator::Error;
using simulator::Fault;
using simulator::File;
using simulator::Refuse;
using simulator::Succeed;

namespace velmora::os {
namespace {

constexpr Error kNoMoreFiles = 18;
constexpr std::uint32_t kFileAttributeArchive = 0x20;

/// One entry of a folder as it was when its listing began.
struct Entry {
  std::string name;
  std::uint32_t attributes = kFileAttributeDirectory;
  FileTime creation_time{};
  FileTime last_access_time{};
  FileTime last_write_time{};
  std::uint64_t size = 0;
};

struct Listing {
  std::vector<Entry> entries;
  std::size_t next = 0;
};

struct OpenedFile {
  std::string path;
  std::uint64_t position = 0;
};

FileTime TimeOf(std::uint64_t time) {
  return {static_cast<std::uint32_t>(time), static_cast<std::uint32_t>(time >> 32)};
}

/// A link has the attributes of what it points to, and that it is one.
std::uint32_t AttributesOf(simulator::Machine& machine, const File& file) {
  const File* target = file.link_target ? simulator::FindFile(machine, file.path) : nullptr;
  const File& described = target != nullptr ? *target : file;
  std::uint32_t attributes = described.folder ? kFileAttributeDirectory : kFileAttributeArchive;
  if (described.read_only) attributes |= kFileAttributeReadOnly;
  if (file.link_target) attributes |= kFileAttributeReparsePoint;
  return attributes;
}

Entry EntryOf(simulator::Machine& machine, const File& file) {
  return {.name = std::string(simulator::NameOf(file.path)),
          .attributes = AttributesOf(machine, file),
          .creation_time = TimeOf(file.creation_time),
          .last_access_time = TimeOf(file.last_access_time),
          .last_write_time = TimeOf(file.last_write_time),
          .size = simulator::SizeOf(file)};
}

void PutName(const std::string& name, std::span<char> field) {
  std::ranges::copy(name.substr(0, field.size() - 1), field.begin());
}
void PutName(const std::string& name, std::span<wchar_t> field) {
  std::ranges::copy(unicode::WideFromUtf8(name).substr(0, field.size() - 1), field.begin());
}

void Put(const Entry& entry, FindData<char>& data) {
  data = {.attributes = entry.attributes,
          .creation_time = entry.creation_time,
          .last_access_time = entry.last_access_time,
          .last_write_time = entry.last_write_time,
          .size = entry.size};
}
void Put(const Entry& entry, FindData<wchar_t>& data) {
  data = {.attributes = entry.attributes & (kFileAttributeDirectory | kFileAttributeReparsePoint)};
}

/// Gives the listing's next entry; with kUnterminated under a name that fills its field.
template <class Character>
bool PutNext(Listing& listing, Fault fault, FindData<Character>& data) {
  if (listing.next == listing.entries.size()) return Succeed(kNoMoreFiles);
  const Entry& entry = listing.entries[listing.next++];
  Put(entry, data);
  const bool is_spoiled = fault == Fault::kUnterminated;
  PutName(is_spoiled ? std::string(std::size(data.name), 'A') : entry.name, data.name);
  return true;
}

/// Why the folder cannot be listed; else its entries, with "." and "..".
Error List(Entered& call, const std::string& pattern, Listing& listing) {
  auto& machine = call.session.machine;
  if (!machine.files) return simulator::Unscripted(call.session, "FindFirstFile", "files");
  const auto separator = pattern.find_last_of("\\/");
  if (separator == std::string::npos || pattern.substr(separator + 1) != "*.*") return kErrorFileNotFound;
  const std::string folder = pattern.substr(0, separator);
  const File* file = simulator::FindFile(machine, folder);
  if (file == nullptr || !file->folder) return kErrorPathNotFound;
  if (file->list_error != 0) return file->list_error;
  listing.entries = {{.name = "."}, {.name = ".."}};
  for (const File* entry : simulator::ListFolder(machine, folder)) {
    listing.entries.push_back(EntryOf(machine, *entry));
  }
  return 0;
}

template <class Character>
Handle FindFirst(Entered& call, const std::string& pattern, FindData<Character>& data) {
  if (simulator::IsRefused(call)) return InvalidHandle();
  Listing listing;
  const Error error = List(call, pattern, listing);
  if (error != 0) {
    SetLastError(error);
    return InvalidHandle();
  }
  PutNext(listing, call.fault, data);
  return call.session.Open("FindClose", std::move(listing));
}

/// "Success but empty" is the end of the listing.
template <class Character>
bool FindNext(Entered& call, Handle find, FindData<Character>& data) {
  if (call.Fails()) return Succeed(simulator::kInjectedError);
  if (call.fault == Fault::kEmpty) return Succeed(kNoMoreFiles);
  auto* listing = call.session.Find<Listing>(find, "FindNextFile");
  return listing == nullptr ? Succeed(kErrorInvalidHandle) : PutNext(*listing, call.fault, data);
}

Error Delete(Entered& call, const char* path) {
  auto& machine = call.session.machine;
  if (!machine.files) return simulator::Unscripted(call.session, "DeleteFileA", "files");
  File* file = simulator::FindEntry(machine, path);
  if (file == nullptr) {
    const auto resolved = simulator::ResolvePath(machine, path, false).value_or("");
    const bool has_folder = simulator::FindFile(machine, simulator::FolderOf(resolved)) != nullptr;
    return has_folder ? kErrorFileNotFound : kErrorPathNotFound;
  }
  if (file->failing_deletions && *file->failing_deletions == 0) file->delete_error = 0;
  if (file->failing_deletions && *file->failing_deletions > 0) --*file->failing_deletions;
  if (file->delete_error != 0) return file->delete_error;
  if ((file->folder && !file->link_target) || file->read_only) return kErrorAccessDenied;
  std::erase_if(*machine.files, [file](const File& other) { return &other == file; });
  return 0;
}

}  // namespace

Handle FindFirstFileW(const wchar_t* pattern, FindData<wchar_t>& data) {
  Entered call("FindFirstFileW", pattern);
  return FindFirst(call, unicode::Utf8FromWide(pattern), data);
}

Handle FindFirstFileA(const char* pattern, FindData<char>& data) {
  Entered call("FindFirstFileA", pattern);
  return FindFirst(call, pattern, data);
}

bool FindNextFileW(Handle find, FindData<wchar_t>& data) {
  Entered call("FindNextFileW");
  return FindNext(call, find, data);
}

bool FindNextFileA(Handle find, FindData<char>& data) {
  Entered call("FindNextFileA");
  return FindNext(call, find, data);
}

bool FindClose(Handle find) {
  const Closing call("FindClose");
  const bool was_open = call.session.Close(find, "FindClose");
  return Succeed(was_open && !call.Fails() ? 0 : kErrorInvalidHandle);
}

bool DeleteFileA(const char* path) {
  Entered call("DeleteFileA", path);
  if (call.fault != Fault::kNone) return Succeed(call.Fails() ? simulator::kInjectedError : 0);
  return Succeed(Delete(call, path));
}

bool PathFileExistsW(const wchar_t* path) {
  Entered call("PathFileExistsW", path);
  if (call.fault != Fault::kNone) return Succeed(call.Fails() ? simulator::kInjectedError : 0);
  if (!call.session.machine.files) {
    return Succeed(simulator::Unscripted(call.session, "PathFileExistsW", "files"));
  }
  const bool exists = simulator::FindFile(call.session.machine, unicode::Utf8FromWide(path)) != nullptr;
  return Succeed(exists ? 0 : kErrorFileNotFound);
}

const wchar_t* PathFindExtensionW(const wchar_t* path) { return FindExtension(path); }

Handle OpenFileForReading(const wchar_t* path) {
  Entered call("OpenFileForReading", path);
  if (simulator::IsRefused(call)) return nullptr;
  if (!call.session.machine.files) {
    return Refuse(simulator::Unscripted(call.session, "OpenFileForReading", "files"));
  }
  const File* file = simulator::FindFile(call.session.machine, unicode::Utf8FromWide(path));
  if (file == nullptr) return Refuse(kErrorFileNotFound);
  if (file->open_error != 0) return Refuse(file->open_error);
  if (file->folder) return Refuse(kErrorAccessDenied);
  return call.session.Open("CloseHandle", OpenedFile{file->path});
}

std::uint32_t ReadFile(Handle handle, void* buffer, std::uint32_t size) {
  Entered call("ReadFile", size);
  if (call.Fails()) SetLastError(simulator::kInjectedError);
  if (call.Fails() || call.fault == Fault::kEmpty) return 0;
  auto* opened = call.session.Find<OpenedFile>(handle, "ReadFile");
  const File* file = opened == nullptr ? nullptr : simulator::FindFile(call.session.machine, opened->path);
  if (file == nullptr) return 0;
  std::string bytes = simulator::ReadContents(*file, opened->position, size);
  opened->position += bytes.size();
  if (call.fault == Fault::kUnterminated) std::ranges::fill(bytes, 'A');
  std::memcpy(buffer, bytes.data(), bytes.size());
  return static_cast<std::uint32_t>(bytes.size());
}

}  // namespace velmora::os
