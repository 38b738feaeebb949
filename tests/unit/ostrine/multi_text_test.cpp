#include "ostrine/common/multi_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace ostrine {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(MultiText, EndsAtAnEmptyTextOrItsOwnEnd) {
  EXPECT_THAT(SplitMultiText(std::wstring_view(L"a\0bc\0\0d\0\0", 9)), ElementsAre(L"a", L"bc"));
  EXPECT_THAT(SplitMultiText(std::wstring_view(L"a\0bc", 4)), ElementsAre(L"a", L"bc"));
  EXPECT_THAT(SplitMultiText(std::wstring_view(L"a\0bc\0", 5)), ElementsAre(L"a", L"bc"));
  EXPECT_THAT(SplitMultiText(std::wstring_view(L"\0a\0", 3)), IsEmpty());
  EXPECT_THAT(SplitMultiText(L""), IsEmpty());
}

TEST(MultiText, GivesBackWhateverTextsWereJoined) {
  std::mt19937 random(7);
  for (int i = 0; i < 2000; ++i) {
    std::vector<std::wstring> texts(random() % 5);
    std::wstring list;
    for (auto& text : texts) {
      text.assign(1 + random() % 4, static_cast<wchar_t>(1 + random() % 0xFFFF));
      list += text + L'\0';
    }
    EXPECT_EQ(SplitMultiText(list + L'\0'), texts);
  }
}

}  // namespace
}  // namespace ostrine
