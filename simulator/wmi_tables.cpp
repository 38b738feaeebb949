#include "simulator/wmi_tables.h"

#include <memory>

#include "platform/case_folding.h"
#include "platform/unicode.h"
#include "simulator/session.h"

namespace simulator {
namespace {

using velmora::EqualIgnoringCase;
using velmora::unicode::WideFromUtf8;

/// Lives as long as its session, so that a use after the last release is seen and does no harm.
class Part final : public ConnectionPart {
 public:
  explicit Part(Session& session) : session_(session), handle_(session.OpenHandle()) {}

  long QueryInterface(const GUID& /*interface_id*/, void** object) override {
    constexpr long kNoInterface = -0x7FFFBFFE;  // 0x80004002
    *object = nullptr;
    return kNoInterface;
  }
  unsigned long AddRef() override {
    if (owners_ == 0) ReportProblem("a released connection was taken part in");
    return ++owners_;
  }
  unsigned long Release() override {
    const InsideSimulator inside;
    if (owners_ == 0) {
      ReportProblem("a connection was released too often");
      return 0;
    }
    if (--owners_ == 0) session_.CloseHandle(handle_, "CWMI");
    return owners_;
  }

 private:
  Session& session_;
  std::uint64_t handle_;
  unsigned long owners_ = 1;
};

/// The word by which WMI names a service's state.
const wchar_t* StateWord(std::uint32_t state) {
  switch (state) {
    case 1:
      return L"Stopped";
    case 2:
      return L"Start Pending";
    case 3:
      return L"Stop Pending";
    case 4:
      return L"Running";
    case 5:
      return L"Continue Pending";
    case 6:
      return L"Pause Pending";
    case 7:
      return L"Paused";
    default:
      return L"Unknown";
  }
}

ostrine::WqlRecord WqlRecordOf(const Process& process) {
  return {{L"ProcessId", std::uint64_t{process.process_id}},
          {L"Caption", WideFromUtf8(process.caption)},
          {L"Name", WideFromUtf8(process.caption)},
          {L"ExecutablePath", WideFromUtf8(process.executable_path)}};
}

ostrine::WqlRecord WqlRecordOf(const Service& service) {
  return {{L"Name", WideFromUtf8(service.name)},
          {L"DisplayName", WideFromUtf8(service.display_name)},
          {L"State", StateWord(service.state)}};
}

ostrine::WqlRecord WqlRecordOf(const WmiRow& row) {
  ostrine::WqlRecord record;
  for (const auto& [name, value] : row) {
    if (const auto* text = std::get_if<std::string>(&value)) {
      record.emplace_back(WideFromUtf8(name), WideFromUtf8(*text));
    } else {
      record.emplace_back(WideFromUtf8(name), std::get<std::uint64_t>(value));
    }
  }
  return record;
}

template <class Elements>
void Append(const Elements& elements, WqlRecords& records) {
  for (const auto& element : elements) records.push_back(WqlRecordOf(element));
}

}  // namespace

ConnectionPart* OpenConnectionPart(Session& session) {
  auto part = std::make_shared<Part>(session);
  session.kept.push_back(part);
  return part.get();
}

std::optional<WqlRecords> MakeWmiTable(const Machine& machine, std::wstring_view class_name) {
  std::optional<WqlRecords> records;
  if (machine.processes && EqualIgnoringCase(class_name, L"Win32_Process")) {
    Append(*machine.processes, records.emplace());
  }
  if (machine.services && EqualIgnoringCase(class_name, L"Win32_Service")) {
    Append(*machine.services, records.emplace());
  }
  if (!machine.wmi) return records;
  if (!records) records.emplace();
  for (const auto& [name, rows] : machine.wmi->classes) {
    if (EqualIgnoringCase(class_name, WideFromUtf8(name))) Append(rows, *records);
  }
  return records;
}

ostrine::WqlTable VisitRows(const WqlRecords& records) {
  return [&records](const ostrine::WqlVisitor& visit) {
    for (const auto& record : records) {
      const bool goes_on =
          visit([&record](std::wstring_view property) { return ostrine::FindProperty(record, property); });
      if (!goes_on) return;
    }
  };
}

}  // namespace simulator
