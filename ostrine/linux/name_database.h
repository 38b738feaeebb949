/// Names of vendors and products by their numbers, from the machine's databases.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ostrine/common/id_list.h"
#include "ostrine/linux/list_file.h"
#include "ostrine/linux/sysfs.h"
#include "platform/linux/systemd_library.h"

namespace ostrine {

struct DatabaseNames {
  std::string vendor;  ///< empty where no database knows it
  std::string model;
};

/// The hardware database, then the lists `pci.ids` and `usb.ids`. Each is opened when it is first asked and
/// kept as long as this object, which serves one query.
class NameDatabase {
 public:
  explicit NameDatabase(Path root);
  NameDatabase(const NameDatabase&) = delete;
  NameDatabase& operator=(const NameDatabase&) = delete;
  ~NameDatabase();

  /// Names for a device of PCI or USB.
  DatabaseNames Find(const std::string& modalias);

  /// Name of who has registered the firmware ID that an ACPI modalias begins with.
  std::string FindVendor(const std::string& modalias) { return FromHardwareDatabase(modalias).vendor; }

 private:
  /// A list of names that has been looked for.
  struct List {
    explicit List(const char* file) : file_name(file) {}
    const char* file_name;
    Path path;  ///< once it was looked for; empty where there is none
    std::unique_ptr<ListFile> pieces;
    std::optional<std::vector<std::uint8_t>> whole;  ///< once it was needed
    bool is_tried = false;
  };

  void OpenDatabase();
  std::string DatabaseValue(const std::string& modalias, const char* key) const;
  DatabaseNames FromHardwareDatabase(const std::string& modalias);
  DatabaseNames FromLists(const std::string& modalias);
  FoundNames FindIn(List& list, const ListedNumbers& numbers) const;

  Path root_;
  std::optional<velmora::SystemdLibrary> library_;  ///< loaded only where there is a database
  sd_hwdb* database_ = nullptr;
  bool is_database_tried_ = false;
  List pci_list_{"pci.ids"};
  List usb_list_{"usb.ids"};
};

}  // namespace ostrine
