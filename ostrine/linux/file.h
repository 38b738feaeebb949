/// Bounded reading of small files: sysfs and proc attributes, firmware tables.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace ostrine {

/// An attribute of sysfs has at most a page.
inline constexpr std::size_t kAttributeLimit = 4096;

/// All bytes of the regular file `path`. Nothing when it cannot be opened or read, when it is not a regular
/// file (a folder, pipe or device in its place is never waited for), or when it has more than `limit` bytes.
std::optional<std::vector<std::uint8_t>> ReadBytes(const std::filesystem::path& path, std::size_t limit);

/// Text of a one-value attribute without the newline that the kernel ends it with; any other character stays.
/// Nothing where ReadBytes gives nothing.
std::optional<std::string> ReadAttribute(const std::filesystem::path& path);

/// The same for a path in plain text, which spares the taking apart of the path: for those who read
/// attributes by the dozen.
std::optional<std::vector<std::uint8_t>> ReadBytes(const char* path, std::size_t limit);
std::optional<std::string> ReadAttribute(const char* path);

/// The same for a path below an open folder.
std::optional<std::string> ReadAttribute(int folder, const char* path);

}  // namespace ostrine
