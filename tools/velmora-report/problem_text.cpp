#include "velmora-report/problem_text.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace report {
namespace {

struct NumberText {
  std::uint32_t number;
  std::string_view text;
};

constexpr NumberText kProblems[] = {
    {0, "works"},
    {1, "is not configured"},
    {3, "its driver may be corrupt, or memory is short"},
    {9, "does not identify itself properly"},
    {10, "cannot start"},
    {12, "finds no free resources"},
    {14, "works after the system has been started again"},
    {16, "its resources are not all known"},
    {18, "its driver has to be installed again"},
    {19, "its registry entry is damaged"},
    {21, "is being removed"},
    {22, "is switched off"},
    {24, "is absent, or lacks a driver"},
    {28, "has no driver"},
    {29, "is switched off by the firmware"},
    {31, "its driver could not be loaded"},
    {32, "its driver service is disabled"},
    {33, "its resources could not be found out"},
    {34, "has to be configured by hand"},
    {35, "the firmware lacks resources for it"},
    {36, "its interrupt is of the wrong kind"},
    {37, "its driver could not be started"},
    {38, "an earlier copy of its driver is still in memory"},
    {39, "its driver is damaged or missing"},
    {40, "its driver service is entered wrongly"},
    {41, "its driver found no hardware"},
    {42, "is there twice"},
    {43, "was stopped because it reported problems"},
    {44, "was shut down by a program"},
    {45, "is not there"},
    {46, "cannot be reached while the system shuts down"},
    {47, "is prepared to be taken out"},
    {48, "its driver is blocked"},
    {49, "the registry has grown too large"},
    {50, "cannot apply its properties"},
    {51, "waits for another device"},
    {52, "its driver is not signed"},
    {53, "is reserved for debugging"},
    {54, "is being reset"},
};

constexpr NumberText kErrors[] = {
    {0, "done"},
    {5, "the system denies it: administrator rights are needed"},
    {31, "the device does not go"},
    {50, "the device cannot be taken out on its bus"},
    {3010, "the device goes when the system is started again"},
    {0xE000020B, "there is no such device"},
    {0xFFFFFFFF, "the device did not come back working"},
};

template <std::size_t kCount>
std::string TextFor(const NumberText (&texts)[kCount], std::uint32_t number, std::string_view otherwise) {
  const auto* const found = std::ranges::find(texts, number, &NumberText::number);
  return std::string(found == std::end(texts) ? otherwise : found->text);
}

}  // namespace

std::string ProblemText(std::uint32_t code) {
  return TextFor(kProblems, code, "has a problem of another kind");
}

std::string RepairErrorText(std::uint32_t error) {
  return TextFor(kErrors, error, "the system reports an error");
}

}  // namespace report
