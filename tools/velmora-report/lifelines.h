/// What the machine cannot do without while somebody repairs it: the disk that this program runs from, the
/// displays, the keyboards. Each system finds out for itself where these hang.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace report {

/// A device and everything that it hangs on, up to the root of the tree, each as PlaceOf names it.
using Chain = std::vector<std::string>;

struct Lifelines {
  /// The disks that hold this program and the system; absent where that could not be told.
  std::optional<std::vector<Chain>> disks;
  std::vector<Chain> displays;
  std::vector<Chain> keyboards;
};

/// Those of the machine whose devices are listed.
Lifelines ReadLifelines();

/// The part of a device's instance ID by which chains name it.
std::string PlaceOf(std::string_view instance_id);

}  // namespace report
