/// A WMI service of a test's own. While one exists, CWMI objects that are made on threads of the
/// multithreaded apartment talk to it instead of the system's.
#pragma once

#include <windows.h>

#include <wbemcli.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace windows_support {

/// A property: what fills its value, and its type.
struct FakeProperty {
  std::function<void(VARIANT&)> fill;
  CIMTYPE type = CIM_STRING;
};
using FakeRow = std::map<std::wstring, FakeProperty>;

FakeProperty TextProperty(std::wstring text, CIMTYPE type = CIM_STRING);
FakeProperty NumberProperty(LONG number, CIMTYPE type = CIM_UINT32);
FakeProperty BytesProperty(std::vector<std::uint8_t> bytes);

/// The steps at which the service can be told to misbehave.
enum class Step {
  kCreateLocator,
  kConnect,
  kExecQuery,
  kListInstances,
  kNext,
  kGetClass,
  kGetMethod,
  kSpawn,
  kPut,
  kExecMethod,
  kResultObject,
  kGet,
};
inline constexpr Step kAllSteps[] = {Step::kCreateLocator, Step::kConnect,      Step::kExecQuery,
                                     Step::kListInstances, Step::kNext,         Step::kGetClass,
                                     Step::kGetMethod,     Step::kSpawn,        Step::kPut,
                                     Step::kExecMethod,    Step::kResultObject, Step::kGet};

/// The service and what became of it. Made on a thread of the multithreaded apartment.
class FakeWmi {
 public:
  FakeWmi();
  FakeWmi(const FakeWmi&) = delete;
  FakeWmi& operator=(const FakeWmi&) = delete;
  ~FakeWmi();

  // What the service has and does.
  std::map<std::wstring, std::vector<FakeRow>> tables;  ///< rows of a class, whatever a query's conditions
  std::map<Step, HRESULT> answers;  ///< results instead of the true ones; a success then brings nothing
  bool has_firmware = false;        ///< the firmware's class; its instances stand in `tables`
  bool calls_return_at_once = false;
  std::function<FakeRow(const std::wstring& input)> firmware;  ///< what its method puts out

  // What was asked of it.
  std::vector<std::wstring> queries;
  std::vector<std::wstring> called_paths;
  std::vector<long> waits;  ///< every time-out that was given
  long connect_flags = 0;
  int calls_without_class = 0;  ///< method calls before the class was looked up

  std::atomic<int> objects{0};      ///< objects that are alive
  std::atomic<int> connections{0};  ///< connections that are alive

  bool Fails(Step step, HRESULT& result) const;

 private:
  IClassFactory* factory_ = nullptr;
  DWORD registration_ = 0;
};

}  // namespace windows_support
