/// The query families, asked of the baseboard's class, which every machine has a script for.
#include "platform/halquery.h"
#include "tests/torture/operation.h"

namespace torture {
namespace {

using velmora::hal::DeviceClass;

constexpr auto kClass = DeviceClass::kBaseboard;
constexpr auto kOpened = DeviceClass::kDisk;  // the one class whose devices are opened
constexpr std::uint32_t kText = 0;

}  // namespace

std::vector<Operation> FamilyOperations() {
  namespace hal = velmora::hal;
  return {
      Operation("hal::Prepare", [] { return hal::Prepare(kClass); }).MayFailWith(false),
      Operation("hal::ReadNarrowText",
                [] {
                  std::tuple<bool, std::wstring> result;
                  std::get<0>(result) = hal::ReadNarrowText(kClass, kText, nullptr, std::get<1>(result));
                  return result;
                })
          .MayFailWith(std::tuple(false, std::wstring()))
          .MayFailWith(std::tuple(true, std::wstring()))  // a success that gave nothing
          .MayBeSpoiledTo(std::tuple(true, std::wstring(259, L'A'))),
      Operation("hal::NarrowText", [] { return hal::NarrowText(kClass, kText); })
          .MayFailWith(std::wstring())
          .MayBeSpoiledTo(std::wstring(259, L'A')),
      Operation("hal::ShortNarrowText", [] { return hal::ShortNarrowText(kClass, kText); })
          .MayFailWith(std::wstring())
          .MayBeSpoiledTo(std::wstring(49, L'A')),
      Operation("hal::NarrowBytes", [] { return hal::NarrowBytes(kClass, kText, nullptr); })
          .MayFailWith(std::string())
          .MayBeSpoiledTo(std::string(259, 'A')),
      Operation("hal::WideText", [] { return hal::WideText(kClass, kText, nullptr); })
          .MayFailWith(std::wstring())
          .MayBeSpoiledTo(std::wstring(259, static_cast<wchar_t>(0x4141))),
      Operation("hal::ReadNumber of 4 bytes",
                [] {
                  std::uint32_t number = 77;
                  const bool result = hal::ReadNumber(kClass, kText, nullptr, number);
                  return std::tuple(result, number);
                })
          .MayFailWith(std::tuple(false, 0))
          .MayFailWith(std::tuple(true, 0))
          .MayBeSpoiledTo(std::tuple(true, kSpoiled)),
      Operation("hal::ReadNumber of 8 bytes",
                [] {
                  std::uint64_t number = 77;
                  const bool result = hal::ReadNumber(kClass, kText, nullptr, number);
                  return std::tuple(result, number);
                })
          .MayFailWith(std::tuple(false, 0))
          .MayFailWith(std::tuple(true, 0))
          .MayBeSpoiledTo(std::tuple(true, kSpoiledLarge)),
      Operation("hal::Number", [] { return hal::Number(kClass, kText); })
          .MayFailWith(0)
          .MayBeSpoiledTo(kSpoiled),
      Operation("hal::WideTextOf", [] { return hal::WideTextOf(kOpened, 1, kText); })
          .MayFailWith(std::wstring())
          .MayBeSpoiledTo(std::wstring(259, static_cast<wchar_t>(0x4141))),
      Operation("hal::LargeNumberOf", [] { return hal::LargeNumberOf(kOpened, 1, kText); })
          .MayFailWith(0)
          .MayBeSpoiledTo(kSpoiledLarge),
      Operation("hal::QueryInto",
                [] {
                  int value = 77;
                  const int result = hal::QueryInto(kOpened, 1, kText, value);
                  return std::tuple(result, value);
                })
          .MayFailWith(std::tuple(0, 77))
          .MayFailWith(std::tuple(1, 77))  // a success that wrote nothing
          .MayBeSpoiledTo(std::tuple(1, static_cast<int>(kSpoiled))),
  };
}

}  // namespace torture
