#include "ostrine/linux/name_database.h"

#include <string_view>
#include <system_error>
#include <utility>
#include <variant>

#include "ostrine/common/id_list.h"
#include "ostrine/common/modalias.h"
#include "ostrine/linux/file.h"

namespace ostrine {
namespace {

/// Where the system looks for the database, in its order.
constexpr const char* kDatabases[] = {
    "etc/systemd/hwdb/hwdb.bin", "etc/udev/hwdb.bin", "usr/lib/systemd/hwdb/hwdb.bin",
    "lib/systemd/hwdb/hwdb.bin", "lib/udev/hwdb.bin", "usr/lib/udev/hwdb.bin",
};
constexpr const char* kListFolders[] = {"usr/share/misc", "usr/share/hwdata"};
constexpr std::size_t kListLimit = 32 << 20;

}  // namespace

NameDatabase::NameDatabase(Path root) : root_(std::move(root)) {}

NameDatabase::~NameDatabase() {
  if (database_ != nullptr) library_->hwdb_unref(database_);
}

DatabaseNames NameDatabase::Find(const std::string& modalias) {
  DatabaseNames names = FromHardwareDatabase(modalias);
  if (!names.vendor.empty() && !names.model.empty()) return names;
  DatabaseNames listed = FromLists(modalias);
  if (names.vendor.empty()) names.vendor = std::move(listed.vendor);
  if (names.model.empty()) names.model = std::move(listed.model);
  return names;
}

void NameDatabase::OpenDatabase() {
  is_database_tried_ = true;
  for (const char* const place : kDatabases) {
    const Path path = root_ / place;
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) continue;
    if (!library_) library_.emplace();
    if (!*library_ || library_->hwdb_new_from_path(path.c_str(), &database_) >= 0) return;
  }
}

std::string NameDatabase::DatabaseValue(const std::string& modalias, const char* key) const {
  const char* value = nullptr;
  return library_->hwdb_get(database_, modalias.c_str(), key, &value) >= 0 && value != nullptr ? value : "";
}

DatabaseNames NameDatabase::FromHardwareDatabase(const std::string& modalias) {
  if (!is_database_tried_) OpenDatabase();
  if (database_ == nullptr) return {};
  return {DatabaseValue(modalias, "ID_VENDOR_FROM_DATABASE"),
          DatabaseValue(modalias, "ID_MODEL_FROM_DATABASE")};
}

DatabaseNames NameDatabase::FromLists(const std::string& modalias) {
  const Modalias parsed = ParseModalias(modalias);
  ListedNumbers numbers;
  const std::vector<std::uint8_t>* bytes = nullptr;
  if (const auto* pci = std::get_if<PciAlias>(&parsed)) {
    numbers = {pci->vendor, pci->device, pci->subsystem_vendor, pci->subsystem_device};
    bytes = &Loaded(pci_list_, "pci.ids");
  } else if (const auto* usb = std::get_if<UsbAlias>(&parsed)) {
    numbers = {.vendor = usb->vendor, .device = usb->product};
    bytes = &Loaded(usb_list_, "usb.ids");
  } else {
    return {};
  }
  const ListedNames names =
      FindListedNames({reinterpret_cast<const char*>(bytes->data()), bytes->size()}, numbers);
  return {std::string(names.vendor), std::string(names.subsystem.empty() ? names.device : names.subsystem)};
}

const std::vector<std::uint8_t>& NameDatabase::Loaded(List& list, const char* name) const {
  for (const char* const folder : kListFolders) {
    if (list) break;
    list = ReadBytes(root_ / folder / name, kListLimit);
  }
  if (!list) list.emplace();
  return *list;
}

}  // namespace ostrine
