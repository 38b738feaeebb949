/// The files of a machine as a tree that paths lead through.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/machine.h"

namespace simulator {

/// Whether two paths are the same but for letter case.
bool IsSamePath(std::string_view left, std::string_view right);

/// The path without doubled, forward or trailing separators, with every link on the way followed, that of the
/// last element too when `follow_last`. None for a loop of links.
std::optional<std::string> ResolvePath(const Machine& machine, std::string_view path, bool follow_last);

/// What `path` leads to, its last link followed; null when there is nothing.
File* FindFile(Machine& machine, std::string_view path);

/// What `path` names, which may itself be a link; null when there is nothing.
File* FindEntry(Machine& machine, std::string_view path);

/// The entries of the folder that `path` leads to, in the machine's order.
std::vector<File*> ListFolder(Machine& machine, std::string_view path);

/// The parts of a path before and behind its last separator.
std::string_view FolderOf(std::string_view path);
std::string_view NameOf(std::string_view path);

/// Deletes what `path` names, a link itself; why that fails, or 0.
Error DeleteEntry(Machine& machine, std::string_view path);

/// The bytes of a file that start at `position`, at most `size`.
std::string ReadContents(const File& file, std::uint64_t position, std::size_t size);
std::uint64_t SizeOf(const File& file);

}  // namespace simulator
