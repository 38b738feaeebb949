/// velmora's copying of connections, against connection parts that count their owners.
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <memory>
#include <optional>

#include "platform/ostrine/wmi.h"
#include "simulator/run.h"
#include "tests/support/simulator/allocations.h"

namespace {

/// The three words with which an object begins.
std::array<ConnectionPart*, 3> Words(const CWMI& wmi) {
  std::array<ConnectionPart*, 3> words{};
  std::memcpy(words.data(), &wmi, sizeof words);
  return words;
}

/// How many owners a part has.
unsigned long Owners(ConnectionPart* part) {
  part->AddRef();
  return part->Release();
}

class WmiCopy : public testing::Test {
 protected:
  simulator::Run run_{simulator::EmptyMachine()};
};

TEST_F(WmiCopy, HasTheWordsOfTheOriginalAndOwnsThemToo) {
  const CWMI original(L"ROOT\\CIMV2");
  ASSERT_NE(Words(original)[0], nullptr);
  const CWMI copy(original);
  EXPECT_EQ(Words(copy), Words(original));
  EXPECT_EQ(Owners(Words(copy)[0]), 2u);
  EXPECT_EQ(Words(copy)[2], nullptr) << "a word that is null stays so";
}

TEST_F(WmiCopy, MakesNoCallOfItsOwn) {
  const CWMI original(L"ROOT\\CIMV2");
  CWMI other(L"ROOT\\WMI");
  const int calls = run_.Calls();
  const CWMI copy(original);
  other = copy;
  EXPECT_EQ(run_.Calls(), calls);
}

TEST_F(WmiCopy, ReleasesWhatItHadWhenAssigned) {
  const CWMI original(L"ROOT\\CIMV2");
  CWMI other(L"ROOT\\WMI");
  const CWMI other_owner(other);
  ConnectionPart* const old_part = Words(other)[0];
  other = original;
  EXPECT_EQ(Owners(old_part), 1u);
  EXPECT_EQ(Words(other), Words(original));
  EXPECT_EQ(Owners(Words(original)[0]), 2u);
}

TEST_F(WmiCopy, KeepsItsPartsWhenAssignedToItself) {
  CWMI wmi(L"ROOT\\CIMV2");
  const auto words = Words(wmi);
  const CWMI& itself = wmi;
  wmi = itself;
  EXPECT_EQ(Words(wmi), words);
  EXPECT_EQ(Owners(words[0]), 1u);
}

TEST_F(WmiCopy, LeavesTheTargetAsItWasWhenMemoryRunsOut) {
  const CWMI original(std::wstring(300, L'x'));
  CWMI other(L"ROOT\\WMI");
  const auto words = Words(other);
  {
    const velmora::testing::FailingAllocation failing(0, true);
    EXPECT_THROW(other = original, std::bad_alloc);
  }
  EXPECT_EQ(Words(other), words);
  EXPECT_EQ(Owners(words[0]), 1u);
}

TEST_F(WmiCopy, TakesNoPartWhenMemoryRunsOut) {
  const CWMI original(L"ROOT\\CIMV2");  // a name that needs memory, which comes before the parts are shared
  {
    const velmora::testing::FailingAllocation failing(0, true);
    EXPECT_THROW(
        {
          const CWMI copy(original);
          (void)copy;
        },
        std::bad_alloc);
  }
  EXPECT_EQ(Owners(Words(original)[0]), 1u);
}

}  // namespace
