/// A service that runs until it is told to stop. Started as a plain program it waits for a minute, so that
/// tests have a process to end.
#include <windows.h>

#include <winsvc.h>

namespace {

SERVICE_STATUS_HANDLE registration;
HANDLE stop;

void Report(DWORD state) {
  SERVICE_STATUS status{};
  status.dwServiceType = SERVICE_WIN32_OWN_PROCESS;
  status.dwCurrentState = state;
  status.dwControlsAccepted = state == SERVICE_RUNNING ? SERVICE_ACCEPT_STOP : 0u;
  SetServiceStatus(registration, &status);
}

DWORD WINAPI Control(DWORD control, DWORD, void*, void*) {
  if (control == SERVICE_CONTROL_STOP) {
    Report(SERVICE_STOP_PENDING);
    SetEvent(stop);
  }
  return NO_ERROR;
}

void WINAPI Run(DWORD, wchar_t**) {
  stop = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  registration = RegisterServiceCtrlHandlerExW(L"VelmoraTestService", Control, nullptr);
  Report(SERVICE_RUNNING);
  WaitForSingleObject(stop, INFINITE);
  Report(SERVICE_STOPPED);
}

}  // namespace

int main(int count, char**) {
  if (count > 1) {
    Sleep(60'000);
    return 0;
  }
  wchar_t name[] = L"VelmoraTestService";
  const SERVICE_TABLE_ENTRYW table[] = {{name, Run}, {nullptr, nullptr}};
  return StartServiceCtrlDispatcherW(table) ? 0 : 1;
}
