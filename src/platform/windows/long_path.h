/// Paths beyond the 260 characters that the system takes as they are.
#pragma once

#include <string>

namespace velmora::os {

/// `path` in the form in which the system takes it whatever its length. A short one stays as it is.
std::wstring LongPath(std::wstring path);

/// The same for a folder, then "//*.*".
std::wstring LongPattern(std::wstring pattern);

}  // namespace velmora::os
