/// A file in which numbers are registered, read where it is looked at.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "ostrine/common/id_list.h"
#include "ostrine/linux/sysfs.h"

namespace ostrine {

class ListFile : public ListInPieces {
 public:
  /// Nothing when `path` is no regular file that can be read, or has more than `limit` bytes.
  static std::unique_ptr<ListFile> Open(const Path& path, std::size_t limit);
  ~ListFile() override;

  std::size_t Size() const override { return size_; }
  std::string_view From(std::size_t offset) override;

 private:
  ListFile(int descriptor, std::size_t size) : descriptor_(descriptor), size_(size) {}
  void Read(std::size_t offset, std::size_t count);

  int descriptor_;
  std::size_t size_;
  std::string piece_;
  std::size_t start_ = 0;  ///< of the piece
};

}  // namespace ostrine
