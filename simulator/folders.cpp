/// The os contract about trees of folders over a machine's tree.
#include "platform/os/folders.h"

#include <optional>
#include <string>
#include <string_view>

#include "simulator/failing.h"
#include "simulator/file_tree.h"
#include "simulator/listing.h"

using simulator::Closing;
using simulator::Entered;
using simulator::Error;
using simulator::Fault;
using simulator::File;
using simulator::Listing;
using simulator::Machine;
using simulator::Refuse;
using simulator::Succeed;

namespace velmora::os {
namespace {

constexpr Error kWrittenTo = 1006;
constexpr const char* kFolderCloser = "CloseFolder";

struct OpenedFolder {
  std::string path;  ///< in full, with every link followed
  std::optional<Listing> listing;
};

/// A folder that is itself there and no link; null otherwise.
const File* PlainFolder(Machine& machine, const std::string& path) {
  const File* file = simulator::FindEntry(machine, path);
  return file != nullptr && file->folder && !file->link_target ? file : nullptr;
}

/// The full path of the entry `path` below `folder`; none when a step there leads through no plain folder.
std::optional<std::string> StepDown(Machine& machine, const std::string& folder, std::string_view path) {
  std::string full = folder;
  for (;;) {
    if (PlainFolder(machine, full) == nullptr) return std::nullopt;
    const auto separator = path.find('\\');
    (full += '\\') += path.substr(0, separator);
    if (separator == std::string_view::npos) return full;
    path.remove_prefix(separator + 1);
  }
}

FolderHandle OpenAt(Entered& call, const std::string& path) {
  const File* file = PlainFolder(call.session.machine, path);
  if (file == nullptr) return Refuse(kErrorPathNotFound);
  if (file->list_error != 0) return Refuse(file->list_error);
  return call.session.Open(kFolderCloser, OpenedFolder{path, std::nullopt});
}

}  // namespace

FolderHandle OpenFolderA(const char* pattern) {
  Entered call("OpenFolderA", pattern);
  if (simulator::IsRefused(call)) return nullptr;
  auto& machine = call.session.machine;
  if (!machine.files) return Refuse(simulator::Unscripted(call.session, "OpenFolderA", "files"));
  constexpr std::string_view kEverything = "//*.*";
  const std::string_view text = pattern;
  if (!text.ends_with(kEverything)) return Refuse(kErrorPathNotFound);
  const auto path = simulator::ResolvePath(machine, text.substr(0, text.size() - kEverything.size()), true);
  return path ? OpenAt(call, *path) : Refuse(kErrorPathNotFound);
}

FolderHandle OpenSubfolderA(FolderHandle folder, const char* path) {
  Entered call("OpenSubfolderA", path);
  if (simulator::IsRefused(call)) return nullptr;
  const auto* opened = call.session.Find<OpenedFolder>(folder, "OpenSubfolderA");
  if (opened == nullptr) return Refuse(kErrorInvalidHandle);
  const auto full = StepDown(call.session.machine, opened->path, path);
  return full ? OpenAt(call, *full) : Refuse(kErrorPathNotFound);
}

bool ReadFolderA(FolderHandle folder, FolderEntry& entry) {
  Entered call("ReadFolderA");
  if (call.Fails()) return Succeed(simulator::kInjectedError);
  if (call.fault == Fault::kEmpty) return Succeed(simulator::kNoMoreFiles);
  auto* opened = call.session.Find<OpenedFolder>(folder, "ReadFolderA");
  if (opened == nullptr) return Succeed(kErrorInvalidHandle);
  if (!opened->listing) opened->listing = {simulator::ReadEntries(call.session.machine, opened->path)};
  return simulator::PutNext(*opened->listing, call.fault, entry);
}

bool DeleteFileBelowA(FolderHandle folder, const char* path, const FileTime& last_write_time) {
  const std::uint64_t units = (std::uint64_t{last_write_time.high} << 32) | last_write_time.low;
  Entered call("DeleteFileBelowA", path, units);
  if (call.fault != Fault::kNone) return Succeed(call.Fails() ? simulator::kInjectedError : 0);
  const auto* opened = call.session.Find<OpenedFolder>(folder, "DeleteFileBelowA");
  if (opened == nullptr) return Succeed(kErrorInvalidHandle);
  auto& machine = call.session.machine;
  const auto full = StepDown(machine, opened->path, path);
  if (!full) return Succeed(kErrorPathNotFound);
  const File* file = simulator::FindEntry(machine, *full);
  if (file != nullptr && file->last_write_time > units) return Succeed(kWrittenTo);
  return Succeed(simulator::DeleteEntry(machine, *full));
}

bool CloseFolder(FolderHandle folder) {
  const Closing call("CloseFolder");
  const bool was_open = call.session.Close(folder, kFolderCloser);
  return Succeed(was_open && !call.Fails() ? 0 : kErrorInvalidHandle);
}

}  // namespace velmora::os
