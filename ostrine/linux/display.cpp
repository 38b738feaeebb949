#include "ostrine/linux/display.h"

#include <vector>

#include "ostrine/linux/file.h"
#include "ostrine/linux/video_text.h"

namespace ostrine {
namespace {

constexpr const char* kDrm = "sys/class/drm";
constexpr const char* kFrameBuffer = "sys/class/graphics/fb0";

struct Connector {
  std::string name;
  ConnectorRank rank;
};

std::vector<Connector> Connectors(const Path& root) {
  std::vector<Connector> connectors;
  for (std::string& name : EntryNames(root / kDrm, "card")) {
    if (const auto rank = RankConnector(name)) connectors.push_back({std::move(name), *rank});
  }
  return connectors;
}

bool IsAsleep(const Path& root, const std::string& connector) {
  const std::string card = connector.substr(0, connector.find('-'));
  const std::string status = CleanAttribute(root / kDrm / card / "device/power/runtime_status");
  return status == "suspended" || status == "suspending";
}

bool IsOn(const Path& root, const std::string& connector) {
  if (IsAsleep(root, connector)) return false;
  const Path folder = root / kDrm / connector;
  return CleanAttribute(folder / "status") == "connected" && CleanAttribute(folder / "enabled") == "enabled";
}

/// Folder of the one among `connectors` whose display is on and best; empty when there is none.
Path ChooseConnector(const Path& root, const std::vector<Connector>& connectors) {
  const Connector* found = nullptr;
  for (const Connector& connector : connectors) {
    const bool is_better = found == nullptr || connector.rank < found->rank;
    if (is_better && IsOn(root, connector.name)) found = &connector;
  }
  return found != nullptr ? root / kDrm / found->name : Path();
}

std::optional<Edid> ReadEdid(const Path& connector) {
  constexpr std::size_t kLimit = 32768;  // 256 blocks
  if (connector.empty()) return std::nullopt;
  const auto bytes = ReadBytes(connector / "edid", kLimit);
  return bytes ? ParseEdid(*bytes) : std::nullopt;
}

std::optional<DisplaySize> ReadMode(const Path& connector) {
  return FirstMode(ReadAttribute(connector / "modes").value_or(std::string()));
}

}  // namespace

Path FindConnector(const Path& root) { return ChooseConnector(root, Connectors(root)); }

std::optional<DisplaySize> ReadDisplaySize(const Path& root) {
  const std::vector<Connector> connectors = Connectors(root);
  if (const Path connector = ChooseConnector(root, connectors); !connector.empty())
    return ReadMode(connector);
  if (!connectors.empty()) return std::nullopt;
  return ParseVirtualSize(CleanAttribute(root / kFrameBuffer / "virtual_size"));
}

std::optional<std::uint32_t> ReadDisplayRate(const Path& root) {
  const Path connector = FindConnector(root);
  const auto edid = ReadEdid(connector);
  if (!edid || !edid->preferred) return std::nullopt;
  const auto size = ReadMode(connector);
  if (!size) return std::nullopt;
  const bool is_preferred = edid->preferred->width == size->width && edid->preferred->height == size->height;
  return is_preferred ? std::optional(edid->preferred->rate) : std::nullopt;
}

std::optional<std::uint32_t> ReadDisplayDepth(const Path& root) {
  constexpr std::int64_t kMost = 128;
  const auto depth = NumberAttribute(root / kFrameBuffer / "bits_per_pixel");
  if (!depth || *depth < 1 || *depth > kMost) return std::nullopt;
  return static_cast<std::uint32_t>(*depth);
}

std::optional<std::string> ReadMonitorCaption(const Path& root) {
  const auto edid = ReadEdid(FindConnector(root));
  std::string caption = edid ? MonitorCaption(*edid) : std::string();
  if (caption.empty()) return std::nullopt;
  return caption;
}

}  // namespace ostrine
