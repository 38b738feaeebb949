/// Asks the library everything about the machine's fixed parts, so many times in one process: inventory
/// ROUNDS
///
/// As a host would: each round makes its objects anew and asks every getter. Prints how much text and how
/// large numbers came back, so that nothing is left out as unused. With 0 rounds it measures what the process
/// itself costs.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "velmora/baseboard.h"
#include "velmora/cpu.h"
#include "velmora/disk.h"
#include "velmora/memory.h"
#include "velmora/vediocard.h"

namespace {

std::uint64_t sum = 0;  // a program may have what the library may not

void Take(const std::wstring& text) { sum += text.size(); }
void Take(std::uint64_t number) { sum += number; }

void AskBaseboard() {
  CBaseboard board;
  Take(board.GetBaseboardProduct());
  Take(board.GetBaseboardManufacturer());
  Take(board.GetBaseboardVersion());
  Take(board.GetBaseboardSerialNumber());
  Take(board.GetBIOSVersion());
  Take(board.GetBIOSManufacturer());
  Take(board.GetBIOSReaseDate());
}

void AskProcessor() {
  CCpu cpu;
  Take(cpu.GetCpuName());
  Take(cpu.GetCpuManufacturer());
  Take(cpu.GetL1Associativity());
  Take(cpu.GetL2Associativity());
  Take(cpu.GetL3Associativity());
  Take(cpu.GetPhysicalAddressBits());
  Take(cpu.GetLinearAddressBits());
  Take(cpu.GetCpuCurClock());
  Take(cpu.GetCpuExtClock());
  Take(cpu.GetCpuMaxClock());
  Take(cpu.GetCpuCoreNumbers());
  Take(cpu.GetCpuCoreThreads());
  Take(cpu.GetL1CacheSize());
  Take(cpu.GetL2CacheSize());
  Take(cpu.GetL3CacheSize());
  Take(cpu.GetCpuLoadPercent());
  Take(cpu.GetCputype());
}

void AskMemory() {
  CMemory memory;
  unsigned int count = 0;
  std::uint64_t bytes = 0;
  Take(static_cast<std::uint64_t>(memory.GetMemoryNums(count)));
  Take(static_cast<std::uint64_t>(memory.GetTotalMemoryNums(bytes)));
  Take(memory.GetMemoryLoad());
  for (int i = 0; i < static_cast<int>(count); ++i) {
    std::wstring text;
    unsigned int speed = 0;
    memory.GetLocatorbyIndex(text, i);
    Take(text);
    memory.GetManufacturerbyIndex(text, i);
    Take(text);
    memory.GetSerialNumberbyIndex(text, i);
    Take(text);
    memory.GetPartNumberbyIndex(text, i);
    Take(text);
    memory.GetSpeedbyIndex(speed, i);
    memory.GetCapacitybyIndex(bytes, i);
    Take(speed + bytes);
  }
}

void AskDisks() {
  CDisk disk;
  const int count = disk.GetPhysicDiskNumbers();
  for (int i = 0; i < count; ++i) {
    Take(disk.GetCaption(i));
    Take(disk.GetSerialNumber(i));
    Take(disk.GetFirmwareRevision(i));
    Take(disk.GetMediaType(i));
    Take(disk.GetTotalCapacity(i));
    Take(disk.GetRemainCapacity(i));
    Take(disk.GetTotalVendorCapacity(i));
    int solid_state = 0;
    disk.JudgeSSd(i, solid_state);
    Take(static_cast<std::uint64_t>(solid_state));
  }
}

void AskVideo() {
  CVediocard video;
  Take(video.GetVideoCardNumber());
  Take(video.GetInternalVideoCardName());
  Take(video.GetInternalVideoCardStatus());
  Take(video.GetInternalVideoCardDriverVersion());
  Take(video.GetInternalVideoCardDriverDate());
  Take(video.GetInternalVedioCardMemorySize());
  Take(video.GetInternalVedioCardErrorCode());
  Take(video.GetIndependentVideoCardName());
  Take(video.GetIndependentVideoCardStatus());
  Take(video.GetIndependentVideoCardDriverVersion());
  Take(video.GetIndependentVideoCardDriverDate());
  Take(video.GetIndependentVedioCardMemorySize());
  Take(video.GetIndependentVedioCardErrorCode());
  Take(video.GetDisplayResolution());
  Take(video.GetHorizontalResolution());
  Take(video.GetVerticalResolution());
  Take(video.GetRefreshRate());
  Take(video.GetMonitorCaption());
  Take(video.GetBitPerPixel());
}

}  // namespace

int main(int argc, char** argv) {
  const long rounds = argc > 1 ? std::strtol(argv[1], nullptr, 10) : 1;
  for (long round = 0; round < rounds; ++round) {
    AskBaseboard();
    AskProcessor();
    AskMemory();
    AskDisks();
    AskVideo();
  }
  std::printf("%llu\n", static_cast<unsigned long long>(sum));
}
