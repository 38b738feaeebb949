#include "platform/os/processes.h"

#include <cstdint>
#include <string>

#include "platform/guard.h"
#include "platform/os/handle.h"
#include "platform/owned.h"
#include "system/system_query.h"
#include "velmora/services.h"

using velmora::Answer;
using velmora::AskNumberByName;
using velmora::AskTextByName;
using velmora::Owned;

bool KillProcByName(std::wstring name) {
  return Answer(false, [&] {
    constexpr std::uint32_t kMayEnd = 1;
    const std::uint32_t process_id =
        AskNumberByName(L"SELECT ProcessId FROM Win32_Process WHERE Caption='", name, L"ProcessId");
    if (process_id == 0) return false;
    const Owned<velmora::os::Handle, velmora::os::CloseHandle> process(
        velmora::os::OpenProcess(kMayEnd, false, process_id, name));
    if (!process) return false;
    velmora::os::TerminateProcess(process.Get(), 0);
    return true;
  });
}

bool IsProcessRunning(std::wstring name) {
  return Answer(false, [&] {
    return !AskTextByName(L"SELECT Caption FROM Win32_Process WHERE Caption='", name, L"Caption").empty();
  });
}

bool IsProc_unsecapp_Exist() {
  return Answer(false, [] {
    return AskTextByName(L"SELECT ExecutablePath FROM Win32_Process WHERE Caption='", L"unsecapp.exe",
                         L"ExecutablePath") == L"C:\\Windows\\system32\\wbem\\unsecapp.exe";
  });
}
