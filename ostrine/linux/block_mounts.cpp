#include "ostrine/linux/block_mounts.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <utility>

namespace ostrine {
namespace {

struct Mount {
  BlockNumber number;
  std::string source;
  std::string mount_point;
};

/// The next word of `line`, taken off its front; empty at the line's end.
std::string_view TakeWord(std::string_view& line) {
  const std::string_view word = line.substr(0, line.find(' '));
  line.remove_prefix(std::min(word.size() + 1, line.size()));
  return word;
}

/// "27 1 254:0 / /mnt rw,relatime shared:1 - ext4 /dev/vda rw": ids, number, root, mount point, options, any
/// number of fields up to a dash, type, source, options.
std::optional<Mount> ParseMount(std::string_view line) {
  TakeWord(line);
  TakeWord(line);
  const auto number = ParseBlockNumber(TakeWord(line));
  TakeWord(line);
  const std::string_view mount_point = TakeWord(line);
  if (!number || mount_point.empty()) return std::nullopt;
  while (!line.empty() && TakeWord(line) != "-") {
  }
  const std::string_view type = TakeWord(line);
  const std::string_view source = TakeWord(line);
  if (type.empty()) return std::nullopt;
  return Mount{*number, UnescapeMountText(source), UnescapeMountText(mount_point)};
}

bool IsOctal(char c) { return c >= '0' && c <= '7'; }

bool IsOnBlockDevice(const Mount& mount) {
  return mount.number.major != 0 || mount.source.starts_with("/dev/");
}

}  // namespace

std::string UnescapeMountText(std::string_view text) {
  std::string plain;
  plain.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool is_escape = text[i] == '\\' && text.size() - i > 3 && text[i + 1] <= '3' &&
                           IsOctal(text[i + 1]) && IsOctal(text[i + 2]) && IsOctal(text[i + 3]);
    if (is_escape) {
      plain.push_back(
          static_cast<char>((text[i + 1] - '0') * 64 + (text[i + 2] - '0') * 8 + (text[i + 3] - '0')));
      i += 3;
    } else {
      plain.push_back(text[i]);
    }
  }
  return plain;
}

std::vector<MountedFileSystem> ParseMounts(std::string_view mountinfo) {
  std::map<std::string, Mount> visible;  // by mount point; of several mounts at one place the last is seen
  while (!mountinfo.empty()) {
    const std::string_view line = mountinfo.substr(0, mountinfo.find('\n'));
    mountinfo.remove_prefix(std::min(line.size() + 1, mountinfo.size()));
    if (auto mount = ParseMount(line)) {
      std::string place = mount->mount_point;
      visible.insert_or_assign(std::move(place), *std::move(mount));
    }
  }
  std::map<std::pair<std::uint32_t, std::uint32_t>, MountedFileSystem> systems;
  for (auto& [place, mount] : visible) {
    if (!IsOnBlockDevice(mount)) continue;
    MountedFileSystem& system = systems[{mount.number.major, mount.number.minor}];
    system.number = mount.number;
    system.source = std::move(mount.source);
    system.mount_points.push_back(std::move(mount.mount_point));
  }
  std::vector<MountedFileSystem> list;
  list.reserve(systems.size());
  for (auto& [number, system] : systems) list.push_back(std::move(system));
  return list;
}

}  // namespace ostrine
