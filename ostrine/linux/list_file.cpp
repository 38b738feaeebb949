#include "ostrine/linux/list_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

namespace ostrine {

std::unique_ptr<ListFile> ListFile::Open(const Path& path, std::size_t limit) {
  // Nonblocking, so that a pipe in the file's place cannot hold the caller up.
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (descriptor < 0) return nullptr;
  std::unique_ptr<ListFile> file(new ListFile(descriptor, 0));
  struct stat status{};
  if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) return nullptr;
  file->size_ = static_cast<std::size_t>(status.st_size);
  return file->size_ > limit ? nullptr : std::move(file);
}

ListFile::~ListFile() { close(descriptor_); }

std::string_view ListFile::From(std::size_t offset) {
  constexpr std::size_t kPiece = 8192;
  for (std::size_t count = kPiece; offset < size_; count *= 2) {
    if (offset >= start_ && offset - start_ < piece_.size()) {
      const std::string_view rest = std::string_view(piece_).substr(offset - start_);
      const bool is_at_end = start_ + piece_.size() >= size_;
      if (is_at_end || rest.find('\n') != std::string_view::npos) return rest;
    }
    Read(offset, std::min(count, size_ - offset));
  }
  return {};
}

void ListFile::Read(std::size_t offset, std::size_t count) {
  piece_.resize(count);
  const ssize_t size = pread(descriptor_, piece_.data(), count, static_cast<off_t>(offset));
  piece_.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
  start_ = offset;
  if (piece_.size() < count) size_ = offset + piece_.size();  // cut short meanwhile
}

}  // namespace ostrine
