/// One operation of the library as the torture runs it. A subsystem has a table of them:
///
///     Operation("CBattery::GetBatteryName", [] { return CBattery().GetBatteryName(); })
///         .MayFailWith(std::wstring())
///         .MayBeSpoiledTo(std::wstring(259, L'A'));
///
/// The function makes the object, calls the operation and gives its result; outputs stand beside it in a
/// tuple. It must do nothing else, because everything in it is made to fail.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/torture/shown.h"

namespace torture {

class Operation {
 public:
  template <class Body>
  Operation(std::string name, Body body)
      : name_(std::move(name)), body_(std::make_shared<BodyOf<Body>>(std::move(body))) {}

  /// A documented outcome of failure: result and outputs as the operation then leaves them.
  template <class Result>
  Operation MayFailWith(const Result& result) && {
    failures_.insert(Shown(result));
    return std::move(*this);
  }

  /// What a correct reading makes of an answer that is over-long or has no end.
  template <class Result>
  Operation MayBeSpoiledTo(const Result& result) && {
    spoiled_.insert(Shown(result));
    return std::move(*this);
  }

  const std::string& Name() const { return name_; }

  /// Runs it. Allocates nothing but what the operation does.
  void Run() const { body_->Run(); }

  /// What came of the last run, which is forgotten then.
  std::string TakeOutcome() const { return body_->TakeOutcome(); }

  bool IsFailure(const std::string& outcome) const { return failures_.contains(outcome); }
  bool IsSpoiled(const std::string& outcome) const { return spoiled_.contains(outcome); }

 private:
  struct AnyBody {
    virtual ~AnyBody() = default;
    virtual void Run() = 0;
    virtual std::string TakeOutcome() = 0;
  };

  template <class Body>
  struct BodyOf final : AnyBody {
    explicit BodyOf(Body function) : body(std::move(function)) {}
    void Run() override { result.emplace(body()); }
    std::string TakeOutcome() override {
      const std::string outcome = result ? Shown(*result) : "nothing";
      result.reset();
      return outcome;
    }
    Body body;
    std::optional<decltype(std::declval<Body&>()())> result;
  };

  std::string name_;
  std::shared_ptr<AnyBody> body_;
  std::set<std::string> failures_;
  std::set<std::string> spoiled_;
};

// What stands in the results of many operations.
inline constexpr unsigned long kAbsent = 45;           ///< the problem code of a device that is not there
inline constexpr std::size_t kOverlong = 70'000;       ///< characters of an over-long text
inline constexpr std::uint32_t kSpoiled = 0x41414141;  ///< what the bytes of an endless answer make
inline constexpr std::uint64_t kSpoiledLarge = 0x4141414141414141;

inline void Append(std::vector<Operation>& all, std::vector<Operation> more) {
  all.insert(all.end(), more.begin(), more.end());
}

// The tables, one a subsystem.
std::vector<Operation> FamilyOperations();
std::vector<Operation> BaseboardOperations();
std::vector<Operation> BluetoothOperations();
std::vector<Operation> InventoryOperations();
std::vector<Operation> ServiceAndFileOperations();
std::vector<Operation> DeviceDriverOperations();
std::vector<Operation> NetworkAdapterOperations();
std::vector<Operation> NetworkCardOperations();
std::vector<Operation> PartsOperations();
std::vector<Operation> PowerOperations();

}  // namespace torture
