/// Small files of sysfs and proc: bounded reading, and writing that never makes a file. What fails leaves
/// errno.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::os {

/// No file that is read here comes near this size.
inline constexpr std::size_t kSmallFileLimit = 65536;

/// All text of the regular file `path`; nothing when it cannot be read, is no regular file (a folder, pipe or
/// device in its place is never waited for) or is larger than the limit.
std::optional<std::string> ReadSmallFile(const std::filesystem::path& path);

/// The same without the newline that the kernel ends an attribute with.
std::optional<std::string> ReadAttribute(const std::filesystem::path& path);

/// The same for paths in plain text, which spares the taking apart of paths, and for paths below an opened
/// folder.
std::optional<std::string> ReadAttribute(const std::string& path);
std::optional<std::string> ReadAttribute(int folder, const std::string& path);

/// The whole number that an attribute holds; nothing when there is none, or more than the number.
std::optional<std::int64_t> ReadNumber(const std::filesystem::path& path);

/// Writes `text` in one piece into the file `path`, which must exist already.
bool WriteExisting(const std::filesystem::path& path, std::string_view text);

/// Names in the folder `path`, sorted, without "." and ".."; nothing when it cannot be read.
std::optional<std::vector<std::string>> ListNames(const std::filesystem::path& path);
std::optional<std::vector<std::string>> ListNames(const std::string& path);

}  // namespace velmora::os
