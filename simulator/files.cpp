/// The os contract about files over a machine's tree.
#include "platform/os/files.h"

#include <algorithm>
#include <cstring>

#include "platform/text_search.h"
#include "platform/unicode.h"
#include "simulator/failing.h"
#include "simulator/file_tree.h"
#include "simulator/listing.h"

using simulator::Closing;
using simulator::Entered;
using simulator::Error;
using simulator::Fault;
using simulator::File;
using simulator::Listing;
using simulator::Refuse;
using simulator::Succeed;

namespace velmora::os {
namespace {

struct OpenedFile {
  std::string path;
  std::uint64_t position = 0;
};

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
  listing.entries = simulator::ReadEntries(machine, folder);
  return 0;
}

Handle FindFirst(Entered& call, const std::string& pattern, FindData& data) {
  if (simulator::IsRefused(call)) return InvalidHandle();
  Listing listing;
  const Error error = List(call, pattern, listing);
  if (error != 0) {
    SetLastError(error);
    return InvalidHandle();
  }
  simulator::PutNext(listing, call.fault, data);
  return call.session.Open("FindClose", std::move(listing));
}

/// "Success but empty" is the end of the listing.
bool FindNext(Entered& call, Handle find, FindData& data) {
  if (call.Fails()) return Succeed(simulator::kInjectedError);
  if (call.fault == Fault::kEmpty) return Succeed(simulator::kNoMoreFiles);
  auto* listing = call.session.Find<Listing>(find, "FindNextFile");
  return listing == nullptr ? Succeed(kErrorInvalidHandle) : simulator::PutNext(*listing, call.fault, data);
}

}  // namespace

Handle FindFirstFileW(const wchar_t* pattern, FindData& data) {
  Entered call("FindFirstFileW", pattern);
  return FindFirst(call, unicode::Utf8FromWide(pattern), data);
}

bool FindNextFileW(Handle find, FindData& data) {
  Entered call("FindNextFileW");
  return FindNext(call, find, data);
}

bool FindClose(Handle find) {
  const Closing call("FindClose");
  const bool was_open = call.session.Close(find, "FindClose");
  return Succeed(was_open && !call.Fails() ? 0 : kErrorInvalidHandle);
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
