// Any bytes as what a disk or the storage system says about itself.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "ostrine/common/disk_descriptor.h"
#include "ostrine/common/disk_rules.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

void RequireClean(const std::string& text) {
  Require(std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; }));
  Require(text.empty() || (text.front() != ' ' && text.back() != ' '));
}

void RequireClean(const ostrine::DiskIdentity& identity) {
  RequireClean(identity.vendor);
  RequireClean(identity.model);
  RequireClean(identity.serial);
  RequireClean(identity.firmware);
  const std::string caption = ostrine::DiskCaption(identity.vendor, identity.model);
  Require(caption.size() >= identity.model.size());
}

std::uint64_t Number(std::span<const std::uint8_t> bytes, std::size_t at) {
  std::uint64_t number = 0;
  if (bytes.size() >= at + sizeof number) std::memcpy(&number, bytes.data() + at, sizeof number);
  return number;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::span bytes(data, size);
  if (const auto identity = ostrine::ParseAtaIdentity(bytes)) RequireClean(*identity);
  if (const auto identity = ostrine::ParseAtaInformationPage(bytes)) RequireClean(*identity);
  if (const auto serial = ostrine::ParseSerialNumberPage(bytes)) RequireClean(*serial);
  if (const auto descriptor = ostrine::ParseStorageDescriptor(bytes)) RequireClean(descriptor->identity);
  RequireClean(ostrine::ReadableSerial({reinterpret_cast<const char*>(data), size}));
  Require(ostrine::ParseVolumeExtents(bytes).size() <= size / 24);
  const std::uint64_t share = ostrine::ShareOf(Number(bytes, 0), Number(bytes, 8), Number(bytes, 16));
  Require(share <= Number(bytes, 0));
  return 0;
}
