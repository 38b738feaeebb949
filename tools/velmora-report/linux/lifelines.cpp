#include "velmora-report/lifelines.h"

#include <sys/stat.h>

#include "velmora-report/linux/lifelines_tree.h"

namespace report {

Lifelines ReadLifelines() {
  std::vector<dev_t> file_systems;
  for (const char* const name : {"/proc/self/exe", "/"}) {
    struct stat status{};
    // A file system of number 0:0 stands on no disk that could be found.
    file_systems.push_back(stat(name, &status) == 0 ? status.st_dev : dev_t{});
  }
  return ReadLifelinesBelow("/", file_systems);
}

/// An instance ID ends in the device's address on its bus, which is the name of its folder.
std::string PlaceOf(std::string_view instance_id) {
  return std::string(instance_id.substr(instance_id.find_last_of('\\') + 1));
}

}  // namespace report
