/// What every implementation of the os contract owes about networks: the sizes of lists, who owns what, what
/// is left alone on failure. A machine may have no adapter, no Wi-Fi and no radio; what it says then is
/// checked.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "platform/os/adapters.h"
#include "platform/os/bluetooth_radio.h"
#include "platform/os/internet_settings.h"
#include "platform/os/last_error.h"
#include "platform/os/network_list.h"
#include "platform/os/registry.h"
#include "platform/os/wifi.h"
#include "tests/contract/backend.h"

namespace contract {
namespace {

namespace os = velmora::os;
using testing::AnyOf;
using testing::Each;

constexpr std::uint64_t kUntouched = 0xEEEEEEEEEEEEEEEE;

class NetworkServices : public testing::Test {
 protected:
  std::unique_ptr<Backend> backend_ = Backend::SetUp();
};

/// Whether the record at `place` lies in the first `size` bytes of `memory`.
template <class Record>
bool LiesIn(const std::vector<std::uint64_t>& memory, std::uint32_t size, const Record* place) {
  const auto begin = reinterpret_cast<std::uintptr_t>(memory.data());
  const auto at = reinterpret_cast<std::uintptr_t>(place);
  return at >= begin && at - begin <= size && sizeof(Record) <= size - (at - begin);
}

TEST_F(NetworkServices, TellTheSizeOfTheAdapterListAndFillItWithin) {
  std::uint32_t size = 0;
  const std::uint32_t asked = os::GetAdaptersInfo(nullptr, size);
  ASSERT_THAT(asked, AnyOf(111u, 232u));
  if (asked == 232) return;  // no adapter
  ASSERT_GE(size, sizeof(os::AdapterInfo));
  std::vector<std::uint64_t> memory(size / 8 + 1, kUntouched);
  auto* list = reinterpret_cast<os::AdapterInfo*>(memory.data());

  std::uint32_t too_small = sizeof(os::AdapterInfo) - 1;
  EXPECT_EQ(os::GetAdaptersInfo(list, too_small), 111u);
  EXPECT_THAT(memory, Each(kUntouched));
  EXPECT_GE(too_small, sizeof(os::AdapterInfo));

  ASSERT_EQ(os::GetAdaptersInfo(list, size), 0u);
  std::size_t count = 0;
  for (const auto* adapter = list; adapter != nullptr; adapter = adapter->next) {
    ASSERT_TRUE(LiesIn(memory, size, adapter));
    ASSERT_LE(++count, size / sizeof(os::AdapterInfo)) << "the list has no end";
    EXPECT_LE(adapter->address_length, sizeof adapter->address);
    EXPECT_NE(adapter->description[0], '\0');
    for (const auto* first : {&adapter->ip_addresses, &adapter->gateways}) {
      for (const auto* text = first; text != nullptr; text = text->next)
        ASSERT_TRUE(LiesIn(memory, size, text));
    }
  }
  EXPECT_GE(count, 1u);
}

TEST_F(NetworkServices, HaveNoRegistryKeyThatIsNotThere) {
  os::RegistryKey key = this;
  EXPECT_EQ(os::RegOpenKeyExW(os::LocalMachine(), L"SOFTWARE\\No such key of ours", 0, os::kKeyRead, key),
            2u);
  EXPECT_EQ(key, this);
}

TEST_F(NetworkServices, LeaveDataAloneThatARegistryValueIsTooLongFor) {
  const wchar_t* path =
      L"SYSTEM\\CurrentControlSet\\Control\\Class\\{4d36e972-e325-11ce-bfc1-08002be10318}\\0000";
  os::RegistryKey key = nullptr;
  if (os::RegOpenKeyExW(os::LocalMachine(), path, 0, os::kKeyRead, key) != 0) return;  // no network card
  std::uint32_t needed = 0;
  if (os::RegQueryValueExW(key, L"ComponentId", nullptr, nullptr, needed) == 0) {
    std::vector<char> room(needed, '\x5A');
    std::uint32_t size = needed - 1;
    EXPECT_EQ(os::RegQueryValueExW(key, L"ComponentId", nullptr, room.data(), size), 234u);
    EXPECT_THAT(room, Each('\x5A'));
    EXPECT_EQ(size, needed);
    std::uint32_t type = 0;
    EXPECT_EQ(os::RegQueryValueExW(key, L"ComponentId", &type, room.data(), size), 0u);
    EXPECT_EQ(type, 1u);
    EXPECT_EQ(size, needed);
  }
  std::uint32_t size = 0;
  EXPECT_EQ(os::RegQueryValueExW(key, L"No such value of ours", nullptr, nullptr, size), 2u);
  EXPECT_EQ(os::RegCloseKey(key), 0u);
}

TEST_F(NetworkServices, TellTheSizeOfTheProxySettings) {
  constexpr std::uint32_t kProxy = 38;
  std::uint32_t size = 0;
  ASSERT_FALSE(os::InternetQueryOptionW(kProxy, nullptr, size));
  EXPECT_EQ(os::LastError(), 122u);
  ASSERT_GE(size, sizeof(std::uint32_t));
  std::vector<std::uint64_t> memory(size / 8 + 1, kUntouched);
  std::uint32_t too_small = 3;
  EXPECT_FALSE(os::InternetQueryOptionW(kProxy, memory.data(), too_small));
  EXPECT_EQ(os::LastError(), 122u);
  EXPECT_THAT(memory, Each(kUntouched));
  ASSERT_TRUE(os::InternetQueryOptionW(kProxy, memory.data(), size));
  std::uint32_t access_type = 0;
  std::memcpy(&access_type, memory.data(), sizeof access_type);
  EXPECT_THAT(access_type, AnyOf(0u, 1u, 3u, 4u));
}

TEST_F(NetworkServices, AreConnectedByAModemOrALocalNetworkIfAtAll) {
  std::uint32_t flags = 0;
  const bool is_connected = os::InternetGetConnectedState(flags, 0) != 0;
  EXPECT_TRUE(!is_connected || (flags & 3U) != 0) << flags;
}

TEST_F(NetworkServices, MakeNoObjectOfAnUnknownClass) {
  constexpr GUID kNone{0x12345678, 0x1234, 0x1234, {0x12, 0x34, 0x12, 0x34, 0x56, 0x78, 0x9A, 0xBC}};
  os::CoInitialize();
  os::ComObject object = this;
  EXPECT_FALSE(os::ComSucceeded(os::CoCreateInstance(kNone, 23, kNone, object)));
  EXPECT_EQ(object, nullptr);
  os::ComRelease(nullptr);
  os::CoUninitialize();
}

TEST_F(NetworkServices, ReachTheInternetOverANetworkOnly) {
  constexpr GUID kClass{0xDCB00C01, 0x570F, 0x4A9B, {0x8D, 0x69, 0x19, 0x9F, 0xDB, 0xA5, 0x72, 0x3B}};
  constexpr GUID kInterface{0xDCB00000, 0x570F, 0x4A9B, {0x8D, 0x69, 0x19, 0x9F, 0xDB, 0xA5, 0x72, 0x3B}};
  os::CoInitialize();
  os::ComObject manager = nullptr;
  ASSERT_TRUE(os::ComSucceeded(os::CoCreateInstance(kClass, 23, kInterface, manager)));
  ASSERT_NE(manager, nullptr);
  os::VariantBool connected = 7;
  os::VariantBool internet = 7;
  const bool is_told = os::ComSucceeded(os::NetworkListIsConnected(manager, connected)) &&
                       os::ComSucceeded(os::NetworkListIsConnectedToInternet(manager, internet));
  if (is_told) {
    EXPECT_TRUE(connected == os::kVariantTrue || connected == 0);
    EXPECT_TRUE(internet == 0 || connected == os::kVariantTrue);
  }
  os::ComRelease(manager);
  os::CoUninitialize();
}

TEST_F(NetworkServices, OfWifiLeaveTheirResultAsTheLastError) {
  os::Handle client = nullptr;
  std::uint32_t version = 0;
  const std::uint32_t opened = os::WlanOpenHandle(2, version, client);
  if (opened != 0) {
    EXPECT_EQ(os::LastError(), opened);
    EXPECT_EQ(client, nullptr);
    return;
  }
  os::WlanInterfaceList* list = nullptr;
  ASSERT_EQ(os::WlanEnumInterfaces(client, list), 0u);
  ASSERT_NE(list, nullptr);
  os::WlanFreeMemory(list);
  constexpr GUID kNone{0x12345678, 0x1234, 0x1234, {0x12, 0x34, 0x12, 0x34, 0x56, 0x78, 0x9A, 0xBC}};
  os::WlanNetworkList* networks = nullptr;
  const std::uint32_t listed = os::WlanGetAvailableNetworkList(client, kNone, 1, networks);
  EXPECT_TRUE(listed == 0 || os::LastError() == listed) << listed;
  os::WlanFreeMemory(networks);
  EXPECT_EQ(os::WlanCloseHandle(client), 0u);
  os::WlanFreeMemory(nullptr);
}

TEST_F(NetworkServices, OfBluetoothOpenARadioOrLeaveTheHandleAlone) {
  os::Handle radio = this;
  const os::Handle find = os::BluetoothFindFirstRadio({sizeof(os::BluetoothFindRadioParameters)}, radio);
  if (find == nullptr) {
    EXPECT_NE(os::LastError(), 0u);
    EXPECT_EQ(radio, this);
    return;
  }
  EXPECT_TRUE(os::BluetoothFindRadioClose(find));
  os::BluetoothRadioInfo info{};
  info.size = sizeof info;
  EXPECT_EQ(os::BluetoothGetRadioInfo(radio, info), 0u);
  EXPECT_NE(std::find(std::begin(info.name), std::end(info.name), u'\0'), std::end(info.name));
  EXPECT_TRUE(os::CloseHandle(radio));
}

}  // namespace
}  // namespace contract
