#include "platform/os/com.h"

#include <windows.h>

#include <gtest/gtest.h>
#include <objbase.h>

#include <optional>
#include <thread>

#include "platform/os/network_list.h"

namespace velmora::os {
namespace {

constexpr GUID kNetworkListManager{
    0xDCB00C01, 0x570F, 0x4A9B, {0x8D, 0x69, 0x19, 0x9F, 0xDB, 0xA5, 0x72, 0x3B}};
constexpr GUID kNetworkListInterface{
    0xDCB00000, 0x570F, 0x4A9B, {0x8D, 0x69, 0x19, 0x9F, 0xDB, 0xA5, 0x72, 0x3B}};
constexpr GUID kNobody{0x12345678, 0x1234, 0x1234, {1, 2, 3, 4, 5, 6, 7, 8}};
constexpr std::uint32_t kAnyContext = 23;
constexpr std::uint32_t kSingleThreaded = 2;
constexpr std::uint32_t kMultithreaded = 0;

std::optional<APTTYPE> Apartment() {
  APTTYPE type{};
  APTTYPEQUALIFIER qualifier{};
  return SUCCEEDED(CoGetApartmentType(&type, &qualifier)) ? std::optional(type) : std::nullopt;
}

template <class Test>
void OnThread(Test test) {
  std::thread(test).join();
}

TEST(Com, IsEnteredAndLeftInBalance) {
  OnThread([] {
    EXPECT_EQ(CoInitialize(), kComOk);
    EXPECT_NE(Apartment(), std::nullopt);
    EXPECT_EQ(CoInitializeEx(kSingleThreaded), 1) << "it is in already";
    CoUninitialize();
    EXPECT_NE(Apartment(), std::nullopt);
    CoUninitialize();
    EXPECT_EQ(Apartment(), std::nullopt);
  });
}

/// The host's thread is in an apartment of the other kind, once.
void StaysInItsApartment(DWORD hosts, std::uint32_t ours) {
  OnThread([=] {
    ASSERT_EQ(::CoInitializeEx(nullptr, hosts), S_OK);
    const auto apartment = Apartment();
    for (int i = 0; i < 3; ++i) {
      EXPECT_EQ(CoInitializeEx(ours), kComChangedMode);
      CoUninitialize();
      EXPECT_EQ(Apartment(), apartment) << "the host was put out of COM";
    }
    ::CoUninitialize();
    EXPECT_EQ(Apartment(), std::nullopt) << "the thread was entered once too often";
  });
}

TEST(Com, LeavesAHostInTheMultithreadedApartmentThere) {
  StaysInItsApartment(COINIT_MULTITHREADED, kSingleThreaded);
}
TEST(Com, LeavesAHostInASingleThreadedApartmentThere) {
  StaysInItsApartment(COINIT_APARTMENTTHREADED, kMultithreaded);
}

TEST(Com, PairsInitialisationsThatFailForAnotherReason) {
  constexpr std::uint32_t kNoSuchFlag = 0x40;
  OnThread([] {
    ASSERT_EQ(::CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
    const bool failed = !ComSucceeded(CoInitializeEx(kNoSuchFlag));
    CoUninitialize();
    EXPECT_NE(Apartment(), std::nullopt) << failed;
    ::CoUninitialize();
    EXPECT_EQ(Apartment(), std::nullopt);
  });
}

TEST(Com, MakesObjectsAndGivesTheirInterfaces) {
  OnThread([] {
    ASSERT_TRUE(ComSucceeded(CoInitialize()));
    ComObject manager = nullptr;
    ASSERT_EQ(CoCreateInstance(kNetworkListManager, kAnyContext, kNetworkListInterface, manager), kComOk);
    ASSERT_NE(manager, nullptr);
    ComObject again = nullptr;
    EXPECT_EQ(ComQueryInterface(manager, kNetworkListInterface, again), kComOk);
    EXPECT_NE(again, nullptr);
    ComRelease(again);
    ComObject other = manager;
    EXPECT_EQ(ComQueryInterface(manager, kNobody, other), kComNoInterface);
    EXPECT_EQ(other, nullptr);
    VariantBool connected = 7;
    EXPECT_EQ(NetworkListIsConnected(manager, connected), kComOk);
    EXPECT_TRUE(connected == 0 || connected == kVariantTrue) << connected;
    connected = 7;
    EXPECT_EQ(NetworkListIsConnectedToInternet(manager, connected), kComOk);
    EXPECT_TRUE(connected == 0 || connected == kVariantTrue) << connected;
    ComRelease(manager);
    ComRelease(nullptr);
    CoUninitialize();
  });
}

TEST(Com, MakesNoObjectOfAnUnknownClass) {
  OnThread([] {
    ASSERT_TRUE(ComSucceeded(CoInitialize()));
    ComObject object = &object;
    EXPECT_EQ(CoCreateInstance(kNobody, kAnyContext, kNobody, object), kComClassNotRegistered);
    EXPECT_EQ(object, nullptr);
    CoUninitialize();
  });
}

}  // namespace
}  // namespace velmora::os
