#pragma once

#include <cstdint>
#include <vector>

#include "velmora-report/folder_tree.h"

namespace report {

/// Which of the files a pruning to the newest `kept` would delete, oldest first; at most 1000, and none for a
/// negative number.
std::vector<TreeFile> FilesThatWouldGo(const std::vector<TreeFile>& files, std::int64_t kept);

}  // namespace report
