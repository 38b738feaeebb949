#include "ostrine/linux/name_database.h"

#include <string_view>
#include <system_error>
#include <utility>
#include <variant>

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
constexpr std::size_t kNameListLimit = 32 << 20;

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
  FoundNames names;
  if (const auto* pci = std::get_if<PciAlias>(&parsed)) {
    names = FindIn(pci_list_, {pci->vendor, pci->device, pci->subsystem_vendor, pci->subsystem_device});
  } else if (const auto* usb = std::get_if<UsbAlias>(&parsed)) {
    names = FindIn(usb_list_, {.vendor = usb->vendor, .device = usb->product});
  }
  return {std::move(names.vendor), std::move(names.subsystem.empty() ? names.device : names.subsystem)};
}

FoundNames NameDatabase::FindIn(List& list, const ListedNumbers& numbers) const {
  for (const char* const folder : kListFolders) {
    if (list.is_tried) break;
    list.path = root_ / folder / list.file_name;
    list.pieces = ListFile::Open(list.path, kNameListLimit);
    if (list.pieces) break;
  }
  list.is_tried = true;
  if (!list.pieces) return {};
  if (auto names = FindNamesByHalves(*list.pieces, numbers)) return std::move(*names);
  if (!list.whole) list.whole = ReadBytes(list.path, kNameListLimit).value_or(std::vector<std::uint8_t>());
  const ListedNames names =
      FindListedNames({reinterpret_cast<const char*>(list.whole->data()), list.whole->size()}, numbers);
  return {std::string(names.vendor), std::string(names.device), std::string(names.subsystem)};
}

}  // namespace ostrine
