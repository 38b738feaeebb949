#include "velmora-report/files_command.h"

#include <velmora/fileprocess.h>

#include <algorithm>
#include <charconv>
#include <utility>

#include "velmora-report/options.h"
#include "velmora-report/prune_preview.h"
#include "velmora-report/repair_arguments.h"
#include "velmora-report/utf8.h"

namespace report {
namespace {

constexpr std::string_view kExtension = "--extension";
constexpr std::string_view kKeep = "--keep";
constexpr std::string_view kListOptions[] = {kExtension};
constexpr std::string_view kPruneOptions[] = {kKeep};

const std::string& FolderIn(const RepairArguments& arguments) {
  if (arguments.Words().empty() || arguments.Words().front().empty()) throw UsageError("a folder is needed");
  return arguments.Words().front();
}

int KeptIn(const RepairArguments& arguments) {
  const std::string& text = arguments.Required(kKeep);
  int kept = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), kept);
  if (error != std::errc() || end != text.data() + text.size() || kept < 0) {
    throw UsageError("--keep needs a whole number from 0 to 2147483647, not \"" + text + "\"");
  }
  return kept;
}

CommandOutcome ListFiles(std::span<const std::string> arguments) {
  const RepairArguments read(arguments, kListOptions, 1);
  const std::string& folder = FolderIn(read);
  const std::string& extension = read.Required(kExtension);
  List list{.key = "files", .item_title = "File"};
  for (const std::wstring& path : CFileProcess().GetTypeFiles(FromUtf8(extension), FromUtf8(folder))) {
    list.items.push_back({{"path", "Path", ToUtf8(path)}});
  }
  const std::uint64_t count = list.items.size();
  return {{.key = "files",
           .title = "Files",
           .verdict = std::to_string(count) + " files end in " + extension + ".",
           .rows = {{"folder", "Folder", folder},
                    {"extension", "Extension", extension},
                    {"count", "Files", count}},
           .lists = {std::move(list)}},
          kDone};
}

std::uint64_t Bytes(const std::vector<TreeFile>& files) {
  std::uint64_t bytes = 0;
  for (const TreeFile& file : files) bytes += file.bytes;
  return bytes;
}

/// "3 files of 120 bytes"
std::string Amount(const std::vector<TreeFile>& files) {
  return std::to_string(files.size()) + " files of " + std::to_string(Bytes(files)) + " bytes";
}

List ListOf(const std::vector<TreeFile>& files) {
  List list{.key = "files", .item_title = "File"};
  for (const TreeFile& file : files) {
    list.items.push_back({{"path", "Path", file.path}, {"bytes", "Size", file.bytes, "bytes"}});
  }
  return list;
}

CommandOutcome Prune(std::span<const std::string> arguments) {
  const RepairArguments read(arguments, kPruneOptions, 1);
  const std::string& folder = FolderIn(read);
  const int kept = KeptIn(read);
  const std::string narrow_folder = ToNarrowPath(folder);
  const auto all = ListTree(folder);
  auto doomed = FilesThatWouldGo(all, kept);
  const std::size_t chosen = doomed.size();
  if (read.IsConfirmed()) {
    CFileProcess().DeleteFileByPath(narrow_folder, kept);
    std::erase_if(doomed, [](const TreeFile& file) { return IsThere(file.path); });
  }
  std::string verdict = "Would delete " + Amount(doomed) + ". Nothing has been done; --yes does it.";
  if (chosen == 0) verdict = "There is nothing to delete.";
  if (read.IsConfirmed() && chosen != 0) verdict = "Deleted " + Amount(doomed) + ".";
  const bool is_complete = doomed.size() == chosen;
  if (!is_complete) verdict += " " + std::to_string(chosen - doomed.size()) + " could not be deleted.";
  return {{.key = "files",
           .title = "Files",
           .verdict = std::move(verdict),
           .rows = {{"folder", "Folder", folder},
                    {"keep", "Newest files to keep", static_cast<std::uint64_t>(kept)},
                    {"count", "Files in all", static_cast<std::uint64_t>(all.size())},
                    {"chosen_count", "Files to delete", static_cast<std::uint64_t>(chosen)},
                    {"done", "Done", read.IsConfirmed() && is_complete},
                    {read.IsConfirmed() ? "deleted_count" : "would_delete_count",
                     read.IsConfirmed() ? "Deleted" : "Would delete",
                     static_cast<std::uint64_t>(doomed.size()), "files"},
                    {read.IsConfirmed() ? "deleted_bytes" : "would_delete_bytes",
                     read.IsConfirmed() ? "Deleted" : "Would delete", Bytes(doomed), "bytes"}},
           .lists = {ListOf(doomed)}},
          is_complete ? kDone : kFailed};
}

}  // namespace

constexpr Command kFilesList{.group = "files",
                             .name = "list",
                             .usage = "FOLDER --extension .EXT",
                             .summary = "list the files below the folder whose extension is exactly .EXT",
                             .run = ListFiles};
constexpr Command kFilesPrune{
    .group = "files",
    .name = "prune",
    .usage = "FOLDER --keep N [--yes]",
    .summary = "tell which files below the folder go when the newest N stay; --yes deletes them",
    .takes_machine_files = false,
    .run = Prune};

}  // namespace report
