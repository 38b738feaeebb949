/// How the paths that callers hand over stand for paths of this system. Pure.
///
/// Callers separate folders by backslashes, and name a few files by their Windows paths. Wide file names
/// carry a byte that belongs to no UTF-8 character as U+DC00 plus the byte, so that every name comes back as
/// it was.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace velmora::os {

/// The system's path for `path`: every backslash a slash, "C:\Windows\System32\drivers\etc\hosts" in any
/// letter case "/etc/hosts". Nothing for what no file of this system can be: an empty path, any other path
/// with a drive letter (such as "C:\Windows\INF\"), and network and device names, which begin with two
/// backslashes.
std::optional<std::string> SystemPath(std::string_view path);

/// The same for a wide path; nothing also for one that holds what is no character.
std::optional<std::string> SystemPath(std::wstring_view path);

/// The folder whose entries `pattern` asks for: what stands before its ending "//*.*". Nothing without that
/// ending or that folder.
std::optional<std::string> ListedFolder(std::string_view pattern);
std::optional<std::string> ListedFolder(std::wstring_view pattern);

/// Puts the entry name `name` with a final zero into `output` in the form that callers see. False when it
/// does not fit, is empty or holds a backslash, which callers would take for a separator: such an entry
/// cannot be named, and so must not be listed.
bool PutName(std::string_view name, std::span<char> output) noexcept;
bool PutName(std::string_view name, std::span<wchar_t> output) noexcept;

}  // namespace velmora::os
