#pragma once

#include <string>
#include <vector>

namespace velmora {

/// Full paths of the files below `folder` whose extension is exactly `extension`, depth first and in the
/// system's order, as CFileProcess::GetTypeFiles gives them.
std::vector<std::wstring> FindTypedFiles(const std::wstring& extension, std::wstring folder);

}  // namespace velmora
