#include "velmora-report/folder_tree.h"

#include <windows.h>

#include <optional>

#include "velmora-report/options.h"
#include "velmora-report/utf8.h"

namespace report {
namespace {

/// The path in the form in which the system takes it whatever its length.
std::wstring LongPath(const std::string& path) {
  std::wstring given = FromUtf8(path);
  std::wstring full(GetFullPathNameW(given.c_str(), 0, nullptr, nullptr), L'\0');
  const DWORD size = GetFullPathNameW(given.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
  if (size == 0 || size >= full.size()) return given;
  full.resize(size);
  return full.starts_with(L"\\\\") ? full : L"\\\\?\\" + full;
}

/// The name in the system's narrow code page; nothing when that cannot hold it.
std::optional<std::string> Narrowed(const std::wstring& wide) {
  const int size = static_cast<int>(wide.size());
  std::string narrow(wide.size() * 4, '\0');
  const DWORD flags = GetACP() == CP_UTF8 ? 0 : WC_NO_BEST_FIT_CHARS;
  narrow.resize(static_cast<std::size_t>(WideCharToMultiByte(
      CP_ACP, flags, wide.data(), size, narrow.data(), static_cast<int>(narrow.size()), nullptr, nullptr)));
  std::wstring back(narrow.size(), L'\0');
  back.resize(
      static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, narrow.data(), static_cast<int>(narrow.size()),
                                                   back.data(), static_cast<int>(back.size()))));
  return back == wide ? std::optional(narrow) : std::nullopt;
}

/// Depth first, as the library does it: a folder is read to its end before its subfolders are.
class Tree {
 public:
  void Read(const std::string& folder) {
    std::vector<std::string> subfolders;
    WIN32_FIND_DATAW found{};
    const HANDLE find = FindFirstFileW((LongPath(folder) + L"\\*").c_str(), &found);
    if (find == INVALID_HANDLE_VALUE) return;
    do {
      Note(folder, found, subfolders);
    } while (FindNextFileW(find, &found) != FALSE);
    FindClose(find);
    for (const std::string& subfolder : subfolders) {
      constexpr int kMostSubfolders = 1000;
      if (++met_ <= kMostSubfolders && !subfolder.empty()) Read(subfolder);
    }
  }
  std::vector<TreeFile> Take() { return std::move(files_); }

 private:
  void Note(const std::string& folder, const WIN32_FIND_DATAW& found, std::vector<std::string>& subfolders) {
    const std::wstring name = found.cFileName;
    if (name == L"." || name == L"..") return;
    const std::string path = folder + "\\" + ToUtf8(name);
    if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
      const FILETIME& time = found.ftLastWriteTime;
      files_.push_back({path, (std::uint64_t{time.dwHighDateTime} << 32) | time.dwLowDateTime,
                        (std::uint64_t{found.nFileSizeHigh} << 32) | found.nFileSizeLow});
    } else if ((found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
      subfolders.push_back(Narrowed(name) ? path : std::string());  // it counts, but there is no way in
    }
  }

  std::vector<TreeFile> files_;
  int met_ = 0;
};

}  // namespace

std::vector<TreeFile> ListTree(const std::string& folder) {
  Tree tree;
  tree.Read(folder);
  return tree.Take();
}

bool IsThere(const std::string& path) {
  return GetFileAttributesW(LongPath(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::string ToNarrowPath(const std::string& path) {
  const auto narrow = Narrowed(FromUtf8(path));
  if (!narrow) throw UsageError("the system's code page has no letters for \"" + path + "\"");
  return *narrow;
}

}  // namespace report
