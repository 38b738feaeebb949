#include "simulator/spoiled.h"

#include <limits>

namespace simulator {

std::wstring SpoiledText(Fault fault) {
  return std::wstring(fault == Fault::kUnterminated ? kOverlongSize : 0, L'A');
}

std::vector<std::wstring> SpoiledTexts(Fault fault) {
  if (fault != Fault::kUnterminated) return {};
  std::vector<std::wstring> texts(100, L"A");
  texts[0] = SpoiledText(fault);
  return texts;
}

unsigned int SpoiledNumber(Fault fault) {
  return fault == Fault::kUnterminated ? std::numeric_limits<unsigned int>::max() : 0;
}

}  // namespace simulator
