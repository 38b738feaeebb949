/// A kernel driver that answers \\.\IBTRSTD as a radio's reset driver does. The number that it is sent tells
/// what comes of it: the adapter 0xDEAD is gone, any other is reset.
#include <ddk/wdm.h>

enum { kResetRequest = 0x002211FC, kAdapterThatIsGone = 0xDEAD };

static NTSTATUS Finish(IRP* irp, NTSTATUS status) {
  irp->IoStatus.Status = status;
  irp->IoStatus.Information = 0;
  IoCompleteRequest(irp, IO_NO_INCREMENT);
  return status;
}

static NTSTATUS Reset(const IO_STACK_LOCATION* request, const void* input) {
  if (request->Parameters.DeviceIoControl.IoControlCode != kResetRequest)
    return STATUS_INVALID_DEVICE_REQUEST;
  if (request->Parameters.DeviceIoControl.InputBufferLength != sizeof(ULONG)) return STATUS_INVALID_PARAMETER;
  if (request->Parameters.DeviceIoControl.OutputBufferLength != 0) return STATUS_INVALID_PARAMETER;
  return *(const ULONG*)input == kAdapterThatIsGone ? STATUS_DEVICE_NOT_CONNECTED : STATUS_SUCCESS;
}

static NTSTATUS WINAPI OpenOrClose(DEVICE_OBJECT* device, IRP* irp) {
  (void)device;
  return Finish(irp, STATUS_SUCCESS);
}

static NTSTATUS WINAPI Control(DEVICE_OBJECT* device, IRP* irp) {
  (void)device;
  return Finish(irp, Reset(IoGetCurrentIrpStackLocation(irp), irp->AssociatedIrp.SystemBuffer));
}

static void WINAPI Unload(DRIVER_OBJECT* driver) {
  UNICODE_STRING link;
  RtlInitUnicodeString(&link, L"\\DosDevices\\IBTRSTD");
  IoDeleteSymbolicLink(&link);
  IoDeleteDevice(driver->DeviceObject);
}

NTSTATUS WINAPI DriverEntry(DRIVER_OBJECT* driver, UNICODE_STRING* registry_path) {
  UNICODE_STRING name;
  UNICODE_STRING link;
  DEVICE_OBJECT* device = NULL;
  NTSTATUS status;
  (void)registry_path;
  RtlInitUnicodeString(&name, L"\\Device\\IBTRSTD");
  RtlInitUnicodeString(&link, L"\\DosDevices\\IBTRSTD");
  driver->MajorFunction[IRP_MJ_CREATE] = OpenOrClose;
  driver->MajorFunction[IRP_MJ_CLOSE] = OpenOrClose;
  driver->MajorFunction[IRP_MJ_DEVICE_CONTROL] = Control;
  driver->DriverUnload = Unload;
  status = IoCreateDevice(driver, 0, &name, FILE_DEVICE_UNKNOWN, 0, FALSE, &device);
  if (!NT_SUCCESS(status)) return status;
  status = IoCreateSymbolicLink(&link, &name);
  if (!NT_SUCCESS(status)) IoDeleteDevice(device);
  return status;
}
