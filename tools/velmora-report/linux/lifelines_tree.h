#pragma once

#include <sys/types.h>

#include <filesystem>
#include <vector>

#include "velmora-report/lifelines.h"

namespace report {

/// The lifelines of the machine whose kernel shows its devices below `root`, and whose program and system
/// stand on the file systems with these device numbers. A file system that stands on no one disk, such as one
/// that is put together of others or that comes over the network, makes the disks unknown.
Lifelines ReadLifelinesBelow(const std::filesystem::path& root, const std::vector<dev_t>& file_systems);

}  // namespace report
