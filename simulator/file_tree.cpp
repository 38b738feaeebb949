#include "simulator/file_tree.h"

#include <algorithm>
#include <cstddef>

#include "platform/case_folding.h"
#include "platform/os/last_error.h"
#include "platform/unicode.h"

namespace simulator {
namespace {

constexpr int kMostLinks = 40;

bool IsAscii(char character) { return static_cast<unsigned char>(character) < 0x80; }

char LowerAscii(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character + ('a' - 'A')) : character;
}

File* FindExact(Machine& machine, std::string_view path) {
  if (!machine.files) return nullptr;
  const auto found =
      std::ranges::find_if(*machine.files, [&](const File& file) { return IsSamePath(file.path, path); });
  return found == machine.files->end() ? nullptr : &*found;
}

const File* FindExact(const Machine& machine, std::string_view path) {
  return FindExact(const_cast<Machine&>(machine), path);
}

std::string Normalised(std::string_view path) {
  std::string result;
  for (char c : path) {
    if (c == '/') c = '\\';
    if (c != '\\' || result.empty() || result.back() != '\\') result += c;
  }
  if (result.size() > 1 && result.back() == '\\') result.pop_back();
  return result;
}

std::string_view Contents(const File& file) {
  if (!file.raw) return file.contents;
  return {reinterpret_cast<const char*>(file.raw->data.data()), file.raw->data.size()};
}

}  // namespace

bool IsSamePath(std::string_view left, std::string_view right) {
  // From the end: paths of one machine begin alike, and most are told apart by their last characters.
  std::size_t from_end = 0;
  for (; from_end < left.size() && from_end < right.size(); ++from_end) {
    const char a = left[left.size() - from_end - 1];
    const char b = right[right.size() - from_end - 1];
    if (!IsAscii(a) || !IsAscii(b)) {
      return velmora::EqualIgnoringCase(velmora::unicode::WideFromUtf8(left),
                                        velmora::unicode::WideFromUtf8(right));
    }
    if (LowerAscii(a) != LowerAscii(b)) return false;
  }
  return left.size() == right.size();
}

std::string_view FolderOf(std::string_view path) {
  const auto separator = path.find_last_of('\\');
  return separator == std::string_view::npos ? std::string_view() : path.substr(0, separator);
}

std::string_view NameOf(std::string_view path) { return path.substr(path.find_last_of('\\') + 1); }

std::optional<std::string> ResolvePath(const Machine& machine, std::string_view path, bool follow_last) {
  std::string rest = Normalised(path);
  std::string done;
  int links = 0;
  while (!rest.empty()) {
    const auto separator = rest.find('\\', 1);
    const bool is_last = separator == std::string::npos;
    const std::string element = rest.substr(0, separator);
    const std::string tail = is_last ? std::string() : rest.substr(separator);
    const File* file = FindExact(machine, done + element);
    if (file != nullptr && file->link_target && (!is_last || follow_last)) {
      if (++links > kMostLinks) return std::nullopt;
      rest = Normalised(*file->link_target + tail);
      done.clear();
    } else {
      done += element;
      rest = tail;
    }
  }
  return done;
}

File* FindFile(Machine& machine, std::string_view path) {
  const auto resolved = ResolvePath(machine, path, true);
  return resolved ? FindExact(machine, *resolved) : nullptr;
}

File* FindEntry(Machine& machine, std::string_view path) {
  const auto resolved = ResolvePath(machine, path, false);
  return resolved ? FindExact(machine, *resolved) : nullptr;
}

std::vector<File*> ListFolder(Machine& machine, std::string_view path) {
  std::vector<File*> entries;
  const auto folder = ResolvePath(machine, path, true);
  if (!folder || !machine.files) return entries;
  for (File& file : *machine.files) {
    if (IsSamePath(FolderOf(file.path), *folder)) entries.push_back(&file);
  }
  return entries;
}

Error DeleteEntry(Machine& machine, std::string_view path) {
  File* file = FindEntry(machine, path);
  if (file == nullptr) {
    const auto resolved = ResolvePath(machine, path, false).value_or("");
    const bool has_folder = FindFile(machine, FolderOf(resolved)) != nullptr;
    return has_folder ? velmora::os::kErrorFileNotFound : velmora::os::kErrorPathNotFound;
  }
  if (file->failing_deletions && *file->failing_deletions == 0) file->delete_error = 0;
  if (file->failing_deletions && *file->failing_deletions > 0) --*file->failing_deletions;
  if (file->delete_error != 0) return file->delete_error;
  if ((file->folder && !file->link_target) || file->read_only) return velmora::os::kErrorAccessDenied;
  std::erase_if(*machine.files, [file](const File& other) { return &other == file; });
  return 0;
}

std::uint64_t SizeOf(const File& file) { return Contents(file).size() * file.repeated; }

std::string ReadContents(const File& file, std::uint64_t position, std::size_t size) {
  const std::string_view once = Contents(file);
  const std::uint64_t whole = SizeOf(file);
  std::string bytes;
  while (bytes.size() < size && position < whole) {
    const auto at = static_cast<std::size_t>(position % once.size());
    const auto part = once.substr(at, size - bytes.size());
    bytes += part;
    position += part.size();
  }
  return bytes;
}

}  // namespace simulator
