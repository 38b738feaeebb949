/// What stands for COM objects on Linux: objects of two classes, each asked over the system's own services
/// whenever it is asked. An object counts the interfaces that were handed out and goes with the last.
#pragma once

#include <filesystem>
#include <memory>
#include <utility>

#include "platform/linux/handle_object.h"
#include "platform/os/com.h"

namespace velmora::os {

class CountedObject : public HandleObject {
 public:
  /// Whether `interface_id` is the object's own interface, or the one that every object has.
  virtual bool Has(const GUID& interface_id) const noexcept = 0;

  void Add() noexcept { ++count_; }
  bool Release() noexcept { return --count_ == 0; }

 private:
  int count_ = 1;
};

/// The network list manager of the system whose files begin at `root`.
class NetworkListObject : public CountedObject {
 public:
  explicit NetworkListObject(std::filesystem::path root) : root_(std::move(root)) {}
  bool Has(const GUID& interface_id) const noexcept override;
  const std::filesystem::path& Root() const noexcept { return root_; }

 private:
  std::filesystem::path root_;
};

class FirewallPolicyObject : public CountedObject {
 public:
  explicit FirewallPolicyObject(std::filesystem::path root) : root_(std::move(root)) {}
  bool Has(const GUID& interface_id) const noexcept override;
  const std::filesystem::path& Root() const noexcept { return root_; }

 private:
  std::filesystem::path root_;
};

/// CoCreateInstance on `root`.
ComResult MakeObject(const std::filesystem::path& root, const GUID& class_id, const GUID& interface_id,
                     ComObject& object);

}  // namespace velmora::os
