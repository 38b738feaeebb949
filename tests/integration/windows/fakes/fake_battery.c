/* A driver with batteries of every kind, for machines that have none. Each is a device of its own,
 * \\.\VelmoraBattery0 and so on; the first has the name of the interface that the test enters, too.
 *
 * In C, as the driver kit's headers are; a driver has no run-time library. */
#include <ntdef.h>

#include <ddk/wdm.h>

/* What the batteries are like, by number. */
enum Shape { kGood, kEmptyBay, kUnknown, kCut, kSilent, kShapes };

enum Code { kQueryTag = 0x294040, kQueryInformation = 0x294044, kQueryStatus = 0x29404C };
enum Level { kInformation = 0, kDeviceName = 4, kManufacturer = 6 };
enum Size { kTagQuestion = 4, kInformationQuestion = 12, kStatusQuestion = 20, kLongestName = 128 };

static const ULONG kTag = 7;
static const ULONG kUnknownValue = 0xFFFFFFFF;
static const ULONG kUnknownRate = 0x80000000;
static const WCHAR kInterface[] = L"\\??\\ROOT#VELMORABATTERY#0000#{72631e54-78a4-11d0-bcf7-00aa00b7b32a}";

DRIVER_INITIALIZE DriverEntry;

/* What a request gives back. */
struct Answer {
  UCHAR* buffer;
  ULONG room;
  ULONG size;
  BOOLEAN fits;
};

static void Put(struct Answer* answer, UCHAR byte) {
  if (answer->size < answer->room) {
    answer->buffer[answer->size++] = byte;
  } else {
    answer->fits = FALSE;
  }
}

static void PutNumber(struct Answer* answer, ULONG number) {
  for (int shift = 0; shift < 32; shift += 8) Put(answer, (UCHAR)(number >> shift));
}

static BOOLEAN PutText(struct Answer* answer, const char* text) {
  do {
    Put(answer, (UCHAR)*text);
    Put(answer, 0);
  } while (*text++ != '\0');
  return answer->fits;
}

static ULONG NumberAt(const UCHAR* bytes, ULONG offset) {
  ULONG number = 0;
  for (ULONG i = 0; i < 4; ++i) number |= (ULONG)bytes[offset + i] << (8 * i);
  return number;
}

static BOOLEAN PutInformation(struct Answer* answer, ULONG shape) {
  const ULONG capacity = shape == kUnknown ? kUnknownValue : 0;
  PutNumber(answer, 0x80000000); /* a battery of the machine's own */
  if (shape == kCut) return answer->fits;
  PutNumber(answer, 1);
  PutNumber(answer, 0x6E6F694C);
  PutNumber(answer, capacity != 0 ? capacity : 50000);
  PutNumber(answer, capacity != 0 ? capacity : 43830);
  for (int i = 0; i < 4; ++i) PutNumber(answer, 0);
  return answer->fits;
}

static BOOLEAN PutStatus(struct Answer* answer, ULONG shape) {
  const BOOLEAN is_unknown = shape == kUnknown;
  PutNumber(answer, 2); /* discharging */
  PutNumber(answer, is_unknown ? kUnknownValue : 30120);
  PutNumber(answer, is_unknown ? kUnknownValue : 11856);
  PutNumber(answer, is_unknown ? kUnknownRate : (ULONG)-8892);
  return answer->fits;
}

/* Whether the request is answered. The question stands in the answer's buffer, so it is read first. Nobody is
 * made to wait: a question that would wait for a battery or for a change is refused. */
static BOOLEAN Serve(ULONG shape, ULONG code, ULONG question_size, struct Answer* answer) {
  if (code == kQueryTag) {
    if (shape == kEmptyBay || question_size != kTagQuestion || NumberAt(answer->buffer, 0) != 0) return FALSE;
    PutNumber(answer, kTag);
    return answer->fits;
  }
  if (question_size != (code == kQueryStatus ? kStatusQuestion : kInformationQuestion)) return FALSE;
  if (NumberAt(answer->buffer, 0) != kTag) return FALSE;
  const ULONG second = NumberAt(answer->buffer, 4);
  if (code == kQueryStatus) return second == 0 && shape != kSilent && PutStatus(answer, shape);
  if (code != kQueryInformation) return FALSE;
  if (second == kInformation) return PutInformation(answer, shape);
  if (shape == kSilent) return FALSE;
  if (second == kDeviceName) return PutText(answer, "  7FR5J  ");
  return second == kManufacturer && PutText(answer, "SANYO");
}

static NTSTATUS Complete(IRP* request, NTSTATUS status, ULONG size) {
  request->IoStatus.Status = status;
  request->IoStatus.Information = size;
  IoCompleteRequest(request, IO_NO_INCREMENT);
  return status;
}

static NTSTATUS NTAPI OpenOrClose(DEVICE_OBJECT* device, IRP* request) {
  (void)device;
  return Complete(request, STATUS_SUCCESS, 0);
}

static NTSTATUS NTAPI Control(DEVICE_OBJECT* device, IRP* request) {
  const IO_STACK_LOCATION* const location = IoGetCurrentIrpStackLocation(request);
  struct Answer answer = {request->AssociatedIrp.SystemBuffer,
                          location->Parameters.DeviceIoControl.OutputBufferLength, 0, TRUE};
  const BOOLEAN is_served =
      Serve(*(ULONG*)device->DeviceExtension, location->Parameters.DeviceIoControl.IoControlCode,
            location->Parameters.DeviceIoControl.InputBufferLength, &answer);
  return is_served ? Complete(request, STATUS_SUCCESS, answer.size)
                   : Complete(request, STATUS_NO_SUCH_DEVICE, 0);
}

/* `text` with a digit behind it, in `room`. */
static UNICODE_STRING NameOf(const WCHAR* text, WCHAR* room, ULONG number) {
  UNICODE_STRING name = {0, 0, room};
  USHORT length = 0;
  for (; text[length] != L'\0'; ++length) room[length] = text[length];
  room[length++] = (WCHAR)(L'0' + number);
  name.Length = (USHORT)(length * sizeof(WCHAR));
  name.MaximumLength = name.Length;
  return name;
}

static void NTAPI Unload(DRIVER_OBJECT* driver) {
  WCHAR room[kLongestName];
  UNICODE_STRING interface_link;
  for (ULONG number = 0; number < kShapes; ++number) {
    UNICODE_STRING link = NameOf(L"\\??\\VelmoraBattery", room, number);
    IoDeleteSymbolicLink(&link);
  }
  RtlInitUnicodeString(&interface_link, kInterface);
  IoDeleteSymbolicLink(&interface_link);
  while (driver->DeviceObject != NULL) IoDeleteDevice(driver->DeviceObject);
}

static NTSTATUS AddBattery(DRIVER_OBJECT* driver, ULONG number) {
  WCHAR device_room[kLongestName];
  WCHAR link_room[kLongestName];
  UNICODE_STRING name = NameOf(L"\\Device\\VelmoraBattery", device_room, number);
  UNICODE_STRING link = NameOf(L"\\??\\VelmoraBattery", link_room, number);
  DEVICE_OBJECT* device = NULL;
  const NTSTATUS status =
      IoCreateDevice(driver, sizeof(ULONG), &name, FILE_DEVICE_BATTERY, 0, FALSE, &device);
  if (status != STATUS_SUCCESS) return status;
  *(ULONG*)device->DeviceExtension = number;
  device->Flags &= ~(ULONG)DO_DEVICE_INITIALIZING;
  IoCreateSymbolicLink(&link, &name);
  if (number == kGood) {
    UNICODE_STRING interface_link;
    RtlInitUnicodeString(&interface_link, kInterface);
    IoCreateSymbolicLink(&interface_link, &name);
  }
  return STATUS_SUCCESS;
}

NTSTATUS NTAPI DriverEntry(DRIVER_OBJECT* driver, UNICODE_STRING* registry_path) {
  (void)registry_path;
  driver->MajorFunction[IRP_MJ_CREATE] = OpenOrClose;
  driver->MajorFunction[IRP_MJ_CLOSE] = OpenOrClose;
  driver->MajorFunction[IRP_MJ_DEVICE_CONTROL] = Control;
  driver->DriverUnload = Unload;
  for (ULONG number = 0; number < kShapes; ++number) {
    const NTSTATUS status = AddBattery(driver, number);
    if (status != STATUS_SUCCESS) return status;
  }
  return STATUS_SUCCESS;
}
