/// A folder that a backend makes up for the tests of folders. It holds:
///
///     old.dmp         5 bytes, written before new.dmp
///     new.dmp
///     sub\inner.dmp
///     sub\deep\       empty
#pragma once

#include <memory>
#include <string>

namespace contract {

class MadeUpFolder {
 public:
  static std::unique_ptr<MadeUpFolder> SetUp();
  virtual ~MadeUpFolder() = default;

  /// Its path as the os contract takes it.
  virtual std::string Path() const = 0;

  /// Whether there is an entry of that path below it.
  virtual bool Has(const std::string& path) = 0;

  /// Puts a file in place of the folder `path` and all that is in it.
  virtual void PutFileInPlaceOf(const std::string& path) = 0;
};

}  // namespace contract
