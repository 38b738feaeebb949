/// Listings of a folder, as both ways of listing one give them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/os/folders.h"
#include "simulator/machine.h"
#include "simulator/run.h"

namespace simulator {

inline constexpr Error kNoMoreFiles = 18;

/// One entry of a folder as it was when its listing began.
struct Entry {
  std::string name;
  std::uint32_t attributes = velmora::os::kFileAttributeDirectory;
  velmora::os::FileTime last_write_time{};
};

struct Listing {
  std::vector<Entry> entries;
  std::size_t next = 0;
};

/// The entries of the folder `path`, "." and ".." first.
std::vector<Entry> ReadEntries(Machine& machine, std::string_view path);

/// Gives the listing's next entry, with kUnterminated under a name that fills its field; false with the last
/// error at the end.
bool PutNext(Listing& listing, Fault fault, velmora::os::FindData& data);
bool PutNext(Listing& listing, Fault fault, velmora::os::FolderEntry& data);

}  // namespace simulator
