#include "system/typed_files.h"

#include <cstddef>
#include <iterator>
#include <string_view>
#include <utility>

#include "platform/os/files.h"
#include "platform/owned.h"
#include "system/whole_text.h"

namespace velmora {
namespace {

constexpr const wchar_t* kEverything = L"//*.*";

/// Depth first without recursion, so that neither the host's stack nor its number of open files sets a limit:
/// a folder is read to its end, and what follows its first subfolder is kept until that has been gone
/// through.
class Walk {
 public:
  explicit Walk(const std::wstring& extension) : extension_(extension) {}

  std::vector<std::wstring> Below(std::wstring folder) {
    Read(std::move(folder));
    while (!levels_.empty()) {
      Level& level = levels_.back();
      if (level.next == level.rest.size()) {
        levels_.pop_back();
        continue;
      }
      const Entry& entry = level.rest[level.next++];
      std::wstring path = Join(level.folder, entry.name);
      if (entry.is_folder) {
        Read(std::move(path));
      } else {
        found_.push_back(std::move(path));
      }
    }
    return std::move(found_);
  }

 private:
  struct Entry {
    std::wstring name;
    bool is_folder;
  };
  struct Level {
    std::wstring folder;
    std::vector<Entry> rest;
    std::size_t next = 0;
  };

  static std::wstring Join(const std::wstring& folder, std::wstring_view name) {
    std::wstring path;
    path.reserve(folder.size() + 1 + name.size());
    return path.append(folder).append(1, L'\\').append(name);
  }

  void Read(std::wstring folder) {
    os::FindData data{};
    const Owned<os::Handle, os::FindClose> find(os::FindFirstFileW((folder + kEverything).c_str(), data));
    if (!find) return;
    Level& level = levels_.emplace_back(Level{.folder = std::move(folder)});
    do {
      std::end(data.name)[-1] = 0;
      Note(data, level);
    } while (os::FindNextFileW(find.Get(), data));
  }

  void Note(const os::FindData& data, Level& level) {
    if ((data.attributes & os::kFileAttributeDirectory) != 0) {
      const std::wstring_view name = data.name;
      const bool is_link = (data.attributes & os::kFileAttributeReparsePoint) != 0;
      if (!is_link && name != L"." && name != L"..") level.rest.push_back({std::wstring(name), true});
      return;
    }
    // The extension of the name is that of the path, for no name holds a separator.
    const wchar_t* extension = os::PathFindExtensionW(data.name);
    if (*extension == 0 || extension_ != extension) return;
    if (level.rest.empty()) {
      found_.push_back(Join(level.folder, data.name));
    } else {
      level.rest.push_back({data.name, false});
    }
  }

  const std::wstring& extension_;
  std::vector<Level> levels_;
  std::vector<std::wstring> found_;
};

}  // namespace

std::vector<std::wstring> FindTypedFiles(const std::wstring& extension, std::wstring folder) {
  if (!IsWhole(folder) || !os::PathFileExistsW(folder.c_str())) return {};
  return Walk(extension).Below(std::move(folder));
}

}  // namespace velmora
