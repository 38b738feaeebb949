#include "platform/guard.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <stdexcept>
#include <string>

namespace {

using velmora::Answer;
using velmora::Attempt;

TEST(Guard, GivesTheResultOfAnOperationThatSucceeds) {
  EXPECT_EQ(Answer(7, [] { return 3; }), 3);
  EXPECT_EQ(Answer(std::wstring(L"fallback"), [] { return std::wstring(L"result"); }), L"result");
}

TEST(Guard, GivesTheFallbackWhenTheOperationThrows) {
  EXPECT_EQ(Answer(7, []() -> int { throw std::runtime_error("it broke"); }), 7);
  EXPECT_EQ(Answer(std::wstring(L"fallback"), []() -> std::wstring { throw std::bad_alloc(); }), L"fallback");
}

TEST(Guard, CatchesAlsoWhatIsNoException) {
  EXPECT_EQ(Answer(7, []() -> int { throw "a text"; }), 7);
  EXPECT_EQ(Answer(7, []() -> int { throw 3; }), 7);
}

TEST(Guard, TakesAResultThatCanOnlyBeMoved) {
  EXPECT_EQ(*Answer(std::unique_ptr<int>(), [] { return std::make_unique<int>(3); }), 3);
  EXPECT_EQ(Answer(std::unique_ptr<int>(), []() -> std::unique_ptr<int> { throw 3; }), nullptr);
}

TEST(Guard, RunsTheOperationOnce) {
  int runs = 0;
  Answer(0, [&] { return ++runs; });
  Attempt([&] { ++runs; });
  EXPECT_EQ(runs, 2);
}

TEST(Guard, KeepsWhatAnOperationDidBeforeItThrew) {
  int done = 0;
  Attempt([&] {
    done = 1;
    throw std::bad_alloc();
  });
  EXPECT_EQ(done, 1);
}

TEST(Guard, CannotThrowItself) {
  const auto throws = []() -> int { throw 3; };
  static_assert(noexcept(Answer(0, throws)));
  static_assert(noexcept(Attempt(throws)));
  EXPECT_NO_THROW(Attempt(throws));
}

}  // namespace
