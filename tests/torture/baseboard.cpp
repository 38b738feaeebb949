#include "velmora/baseboard.h"

#include "tests/torture/operation.h"

namespace torture {
namespace {

using BaseboardGetter = std::wstring (CBaseboard::*)();

Operation TextOf(const char* name, BaseboardGetter getter) {
  return Operation(name, [getter] { return (CBaseboard().*getter)(); })
      .MayFailWith(std::wstring())
      .MayBeSpoiledTo(std::wstring(259, L'A'));
}

}  // namespace

std::vector<Operation> BaseboardOperations() {
  return {TextOf("CBaseboard::GetBaseboardProduct", &CBaseboard::GetBaseboardProduct),
          TextOf("CBaseboard::GetBaseboardManufacturer", &CBaseboard::GetBaseboardManufacturer),
          TextOf("CBaseboard::GetBaseboardVersion", &CBaseboard::GetBaseboardVersion),
          TextOf("CBaseboard::GetBaseboardSerialNumber", &CBaseboard::GetBaseboardSerialNumber),
          TextOf("CBaseboard::GetBIOSVersion", &CBaseboard::GetBIOSVersion),
          TextOf("CBaseboard::GetBIOSManufacturer", &CBaseboard::GetBIOSManufacturer),
          TextOf("CBaseboard::GetBIOSReaseDate", &CBaseboard::GetBIOSReaseDate)};
}

}  // namespace torture
