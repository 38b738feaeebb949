/// A hardware-abstraction library that answers the baseboard class without reading anything, so that what a
/// benchmark measures is the caller's work.
#include <algorithm>
#include <array>
#include <string_view>

#include "platform/ostrine/hal.h"

extern "C" {
[[gnu::visibility("default")]] decltype(HalInit) HalInit;
[[gnu::visibility("default")]] decltype(HalQueryInformation) HalQueryInformation;
[[gnu::visibility("default")]] decltype(HalSetInformation) HalSetInformation;
[[gnu::visibility("default")]] decltype(HalOpenDevice) HalOpenDevice;
[[gnu::visibility("default")]] decltype(HalCloseDevice) HalCloseDevice;
}

namespace {

/// By information id: a text that fits into a string object, a usual one, a long one.
constexpr std::array<std::string_view, 3> kTexts{
    "A2K",
    "20XW004AGE",
    "a text that is as long as only the longest of all firmware texts are: a product name with its market, "
    "its year and its series, as no reader would wish it",
};

}  // namespace

int HalInit(unsigned int /*device_class*/, void** /*table*/) { return 1; }

int HalQueryInformation(unsigned int /*device_class*/, void* /*device*/, unsigned int information_id,
                        void* buffer, unsigned int buffer_size, unsigned int* returned_size) {
  if (information_id >= kTexts.size() || buffer_size <= kTexts[information_id].size()) return 0;
  const std::string_view text = kTexts[information_id];
  *std::ranges::copy(text, static_cast<char*>(buffer)).out = '\0';
  *returned_size = static_cast<unsigned int>(text.size() + 1);
  return 1;
}

int HalSetInformation(unsigned int, void*, unsigned int, void*, unsigned int, unsigned int*) { return 0; }
int HalOpenDevice(unsigned int, void*) { return 0; }
int HalCloseDevice(unsigned int, void*) { return 0; }
