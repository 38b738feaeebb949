#pragma once

#include <string>
#include <string_view>

namespace velmora {

/// What users call a process, in UTF-8, on a system that has no captions of its own: the file name of its
/// program's `path`, or its own `name` when it has no program (`path` is empty). Pure.
std::string ProcessCaption(std::string_view path, std::string_view name);

/// The path of a program as the kernel's `link` gives it, without the mark that stands behind the path of a
/// file that is no longer there. Pure.
std::string_view ProgramPath(std::string_view link) noexcept;

}  // namespace velmora
