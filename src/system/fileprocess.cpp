#include "velmora/fileprocess.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <utility>

#include "platform/guard.h"
#include "platform/logging.h"
#include "platform/os/files.h"
#include "platform/os/folders.h"
#include "platform/os/last_error.h"
#include "platform/os/processes.h"
#include "platform/owned.h"
#include "system/oldest_files.h"
#include "system/typed_files.h"
#include "system/whole_text.h"

using velmora::Answer;
using velmora::IsWhole;
using velmora::LogDebug;
using velmora::OldestFiles;
using velmora::Owned;
using velmora::Within;
using velmora::os::FileTime;

namespace {

using OwnedFolder = Owned<velmora::os::FolderHandle, velmora::os::CloseFolder>;
using OwnedKernelHandle = Owned<velmora::os::Handle, velmora::os::CloseHandle>;

constexpr const char* kAllEntries = "//*.*";

bool StartProgram(const std::wstring& program) {
  constexpr std::uint32_t kStandardInput = 0xFFFFFFF6;
  constexpr std::uint32_t kNoWindow = 0x08000000;
  velmora::os::StartupInfo startup{};
  startup.size = sizeof startup;
  startup.standard_input = velmora::os::GetStdHandle(kStandardInput);
  velmora::os::ProcessInformation started{};
  if (!velmora::os::CreateProcessW(program.c_str(), nullptr, false, kNoWindow, startup, started))
    return false;
  const OwnedKernelHandle thread(started.thread);
  const OwnedKernelHandle process(started.process);
  return true;
}

std::uint64_t UnitsOf(const FileTime& time) { return (std::uint64_t{time.high} << 32) | time.low; }
FileTime TimeOf(std::uint64_t units) {
  return {static_cast<std::uint32_t>(units), static_cast<std::uint32_t>(units >> 32)};
}

/// A folder that has been read, and which of its subfolders come next.
struct FolderLevel {
  std::string path;  ///< below the folder that is pruned, which has the empty one
  std::vector<std::string> subfolders;
  std::size_t next = 0;
};

/// Shows `files` what the folder `level` holds and adds its subfolders to it. Links to folders are neither.
void ReadLevel(velmora::os::FolderHandle folder, FolderLevel& level, OldestFiles& files) {
  velmora::os::FolderEntry entry{};
  while (velmora::os::ReadFolderA(folder, entry)) {
    const std::string_view name(entry.name, std::find(entry.name, std::end(entry.name) - 1, '\0'));
    if (name == "." || name == "..") continue;
    if ((entry.attributes & velmora::os::kFileAttributeDirectory) == 0) {
      files.Add(UnitsOf(entry.last_write_time), level.path, name);
    } else if ((entry.attributes & velmora::os::kFileAttributeReparsePoint) == 0) {
      level.subfolders.emplace_back(name);
    }
  }
}

/// Reads the folder that `level` names, unless more than 1000 subfolders were met until now.
void GetFiles(const OwnedFolder& root, int met_subfolders, FolderLevel& level, OldestFiles& files) {
  constexpr int kMostSubfolders = 1000;
  LogDebug([&](auto& line) { line << "nums=" << met_subfolders << Within("GetFiles"); });
  if (met_subfolders > kMostSubfolders || !root) return;
  if (level.path.empty()) {
    ReadLevel(root.Get(), level, files);
    return;
  }
  const OwnedFolder folder(velmora::os::OpenSubfolderA(root.Get(), level.path.c_str()));
  if (folder) ReadLevel(folder.Get(), level, files);
}

/// Shows `files` the whole tree. A folder is read to its end before its subfolders are, so that only one is
/// open at a time beside the root, however deep the tree is.
void ReadTree(const OwnedFolder& root, OldestFiles& files) {
  int met_subfolders = 0;
  std::vector<FolderLevel> levels(1);
  GetFiles(root, met_subfolders, levels.back(), files);
  while (!levels.empty()) {
    FolderLevel& level = levels.back();
    if (level.next == level.subfolders.size()) {
      levels.pop_back();
      continue;
    }
    const std::string& name = level.subfolders[level.next++];
    FolderLevel below{.path = level.path.empty() ? name : level.path + '\\' + name};
    GetFiles(root, ++met_subfolders, below, files);
    levels.push_back(std::move(below));
  }
}

}  // namespace

CFileProcess::CFileProcess() = default;
CFileProcess::~CFileProcess() = default;

std::vector<std::wstring> CFileProcess::GetTypeFiles(std::wstring extension, std::wstring folder) {
  return Answer(std::vector<std::wstring>(),
                [&] { return velmora::FindTypedFiles(extension, std::move(folder)); });
}

int CFileProcess::ExcuteCmdFile(const std::wstring& path) {
  const bool is_started = Answer(false, [&] {
    return IsWhole(path) && velmora::os::PathFileExistsW(path.c_str()) && StartProgram(path);
  });
  const std::uint32_t error = velmora::os::LastError();
  LogDebug([&](auto& line) {
    line << ",bRet=" << is_started << ", lasterror=" << error << Within("CFileProcess::ExcuteCmdFile");
  });
  return is_started ? 1 : 0;
}

void CFileProcess::DeleteFileByPath(const std::string& path, int num) {
  constexpr int kTries = 10;
  LogDebug(
      [&](auto& line) { line << "AudioDumpPath num=" << num << Within("CFileProcess::DeleteFileByPath"); });
  const auto root = Answer(OwnedFolder(), [&] {
    if (!IsWhole(path)) return OwnedFolder();
    return OwnedFolder(velmora::os::OpenFolderA((path + kAllEntries).c_str()));
  });
  const auto doomed = Answer(std::vector<OldestFiles::File>(), [&] {
    OldestFiles files;
    ReadTree(root, files);
    return files.TakeAllBut(num);
  });
  for (const auto& file : doomed) {
    bool is_deleted = false;
    for (int i = 0; i < kTries && !is_deleted; ++i) {
      is_deleted = Answer(false, [&] {
        return velmora::os::DeleteFileBelowA(root.Get(), file.path.c_str(), TimeOf(file.last_write_time));
      });
      LogDebug([&](auto& line) {
        line << "delete file, isdeleted=" << is_deleted << Within("CFileProcess::DeleteFileByPath");
      });
    }
  }
}
