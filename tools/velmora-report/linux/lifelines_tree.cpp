#include "velmora-report/linux/lifelines_tree.h"

#include <sys/sysmacros.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <system_error>

namespace report {
namespace {

namespace fs = std::filesystem;

/// Names of the folders from `node` up to the root of the device tree, `devices`; none for what is not in it.
Chain ChainOf(const fs::path& node, const fs::path& devices) {
  std::error_code error;
  fs::path place = fs::canonical(node, error);
  if (error || place.lexically_relative(devices).string().starts_with("..")) return {};
  Chain chain;
  for (; place != devices && place.has_relative_path(); place = place.parent_path())
    chain.push_back(place.filename().string());
  return chain;
}

std::vector<fs::path> Entries(const fs::path& folder) {
  std::error_code error;
  std::vector<fs::path> entries;
  for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error))
    entries.push_back(it->path());
  std::ranges::sort(entries);
  return entries;
}

/// Chains of the disks below the block device `node`: itself, or those that it is put together of.
bool AppendDisks(const fs::path& node, const fs::path& devices, int depth, std::vector<Chain>& disks) {
  constexpr int kDeepest = 16;
  std::error_code error;
  if (depth > kDeepest || !fs::exists(node, error)) return false;
  const fs::path place = fs::canonical(node, error);
  // A partition stands in its disk's folder, and has no list of what it is made of.
  const auto parts = Entries(place / "slaves");
  if (!parts.empty()) {
    return std::ranges::all_of(
        parts, [&](const fs::path& part) { return AppendDisks(part, devices, depth + 1, disks); });
  }
  Chain chain = ChainOf(place, devices);
  // What only the kernel stands behind, such as a file that is used as a disk, does not tell where its data
  // is.
  if (chain.empty() || chain.back() == "virtual") return false;
  disks.push_back(std::move(chain));
  return true;
}

std::optional<std::vector<Chain>> ReadDisks(const fs::path& root, const fs::path& devices,
                                            const std::vector<dev_t>& file_systems) {
  std::vector<Chain> disks;
  for (const dev_t number : file_systems) {
    const std::string name = std::to_string(major(number)) + ":" + std::to_string(minor(number));
    if (!AppendDisks(root / "sys/dev/block" / name, devices, 0, disks)) return std::nullopt;
  }
  return disks;
}

/// Whether the keys of an input device are a typewriter's: the first 31, of which only the first is none.
bool HasTypewriterKeys(const fs::path& input) {
  std::ifstream file(input / "capabilities/key");
  std::string word;
  std::string last;
  while (file >> word) last = word;
  std::istringstream lowest(last);
  unsigned long long keys = 0;
  constexpr unsigned long long kTypewriter = 0xFFFFFFFE;
  return static_cast<bool>(lowest >> std::hex >> keys) && (keys & kTypewriter) == kTypewriter;
}

/// Chains of the entries of a device class that `counts`.
template <class Counts>
std::vector<Chain> ReadClass(const fs::path& folder, const fs::path& devices, Counts counts) {
  std::vector<Chain> chains;
  for (const fs::path& entry : Entries(folder)) {
    if (!counts(entry)) continue;
    Chain chain = ChainOf(entry, devices);
    if (!chain.empty() && chain.back() != "virtual") chains.push_back(std::move(chain));
  }
  return chains;
}

/// "card0", but not the connector "card0-eDP-1".
bool IsCard(const fs::path& entry) {
  const std::string name = entry.filename().string();
  return name.starts_with("card") && name.find('-') == std::string::npos;
}

}  // namespace

Lifelines ReadLifelinesBelow(const fs::path& root, const std::vector<dev_t>& file_systems) {
  std::error_code error;
  const fs::path devices = fs::canonical(root / "sys/devices", error);
  if (error) return {};
  return {.disks = ReadDisks(root, devices, file_systems),
          .displays = ReadClass(root / "sys/class/drm", devices, IsCard),
          .keyboards = ReadClass(root / "sys/class/input", devices, HasTypewriterKeys)};
}

}  // namespace report
