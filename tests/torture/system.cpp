/// Services, processes and files.
#include <new>

#include "tests/torture/operation.h"
#include "velmora/fileprocess.h"
#include "velmora/services.h"

namespace torture {
namespace {

/// Calls `operation` with a copy of `text`. Making the copy is the caller's part; when that fails, the
/// operation counts as failed.
template <class Result, class Function>
Result WithCopy(const wchar_t* text, Result failure, Function operation) {
  std::optional<std::wstring> copy;
  try {
    copy.emplace(text);
  } catch (const std::bad_alloc&) {
    return failure;
  }
  return operation(std::move(*copy));
}

template <bool (*kFunction)(std::wstring)>
Operation Asking(const char* function, const wchar_t* name) {
  return Operation(
             std::string(function) + " " + std::string(name, name + std::char_traits<wchar_t>::length(name)),
             [name] {
               return WithCopy(name, false, [](std::wstring copy) { return kFunction(std::move(copy)); });
             })
      .MayFailWith(false);
}

std::vector<Operation> ServiceOperations() {
  const std::wstring fax = L"Fax";
  const std::wstring spooler = L"Spooler";
  const std::wstring endless(70'000, L'A');
  return {
      Operation("GetServiceState", [spooler] { return GetServiceState(spooler); })
          .MayFailWith(std::wstring())
          .MayBeSpoiledTo(endless),
      Asking<IsServiceRunning>("IsServiceRunning", L"Spooler"),
      Asking<IsServiceExist>("IsServiceExist", L"Spooler"),
      Operation("GetWpnUserServiceExName", [] { return GetWpnUserServiceExName(); })
          .MayFailWith(std::wstring())
          .MayBeSpoiledTo(endless),
      Operation("StartServiceByName", [fax] { return StartServiceByName(fax); }).MayFailWith(false),
      Operation("StopServiceByName",
                [spooler] {
                  StopServiceByName(spooler);
                  return true;
                }),
  };
}

std::vector<Operation> ProcessOperations() {
  return {
      Asking<KillProcByName>("KillProcByName", L"explorer.exe"),
      Asking<KillProcByName>("KillProcByName", L"stuck.exe"),
      // Whatever the caption is that comes back, there is a process.
      Asking<IsProcessRunning>("IsProcessRunning", L"explorer.exe").MayBeSpoiledTo(true),
      Operation("IsProc_unsecapp_Exist", [] { return IsProc_unsecapp_Exist(); }).MayFailWith(false),
  };
}

std::vector<Operation> FileOperations() {
  const std::wstring program = L"C:\\Windows\\System32\\cmd.exe";
  return {
      // Three files are there at the most, and any of them may be missed.
      Operation("CFileProcess::GetTypeFiles",
                [] {
                  return WithCopy(L".dmp", std::size_t{0}, [](std::wstring extension) {
                    return WithCopy(L"C:\\dump", std::size_t{0}, [&](std::wstring folder) {
                      return CFileProcess().GetTypeFiles(std::move(extension), std::move(folder)).size();
                    });
                  });
                })
          .MayFailWith(0)
          .MayFailWith(1)
          .MayFailWith(2),
      Operation("CFileProcess::ExcuteCmdFile", [program] { return CFileProcess().ExcuteCmdFile(program); })
          .MayFailWith(0)
          .MayFailWith(1),  // a start that succeeded, but gave nothing
      Operation("CFileProcess::DeleteFileByPath",
                [] {
                  CFileProcess().DeleteFileByPath("C:\\dump", 1);
                  return true;
                }),
  };
}

}  // namespace

std::vector<Operation> ServiceAndFileOperations() {
  std::vector<Operation> all;
  for (const auto table : {ServiceOperations, ProcessOperations, FileOperations}) {
    const auto operations = table();
    all.insert(all.end(), operations.begin(), operations.end());
  }
  return all;
}

}  // namespace torture
