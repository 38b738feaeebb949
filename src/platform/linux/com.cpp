#include "platform/os/com.h"

#include <clocale>
#include <string>

#include "platform/linux/com_object.h"
#include "platform/unicode.h"

namespace velmora::os {
namespace {

constexpr GUID kUnknownInterface{
    0x00000000, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
constexpr GUID kNetworkListClass{
    0xDCB00C01, 0x570F, 0x4A9B, {0x8D, 0x69, 0x19, 0x9F, 0xDB, 0xA5, 0x72, 0x3B}};
constexpr GUID kNetworkListInterface{
    0xDCB00000, 0x570F, 0x4A9B, {0x8D, 0x69, 0x19, 0x9F, 0xDB, 0xA5, 0x72, 0x3B}};
constexpr GUID kFirewallPolicyClass{
    0xE2B3C97F, 0x6AE1, 0x41AC, {0x81, 0x7A, 0xF6, 0xF9, 0x21, 0x66, 0xD7, 0xDD}};
constexpr GUID kFirewallPolicyInterface{
    0x98325047, 0xC671, 0x4174, {0x8D, 0x81, 0xDE, 0xFC, 0xD3, 0xF0, 0x31, 0x86}};

constexpr auto kBadPointer = static_cast<ComResult>(0x80004003U);

/// Gives the new `made` away if it has the interface.
ComResult Offer(std::unique_ptr<CountedObject> made, const GUID& interface_id, ComObject& object) {
  if (!made->Has(interface_id)) return kComNoInterface;
  object = HandleOf(std::move(made));
  return kComOk;
}

}  // namespace

bool NetworkListObject::Has(const GUID& interface_id) const noexcept {
  return interface_id == kNetworkListInterface || interface_id == kUnknownInterface;
}

bool FirewallPolicyObject::Has(const GUID& interface_id) const noexcept {
  return interface_id == kFirewallPolicyInterface || interface_id == kUnknownInterface;
}

ComResult MakeObject(const std::filesystem::path& root, const GUID& class_id, const GUID& interface_id,
                     ComObject& object) {
  object = nullptr;
  if (class_id == kNetworkListClass)
    return Offer(std::make_unique<NetworkListObject>(root), interface_id, object);
  if (class_id == kFirewallPolicyClass) {
    return Offer(std::make_unique<FirewallPolicyObject>(root), interface_id, object);
  }
  return kComClassNotRegistered;
}

// There are no apartments: a thread needs nothing before it makes objects, and so has nothing to give back.
ComResult CoInitialize() { return kComOk; }
ComResult CoInitializeEx(std::uint32_t /*flags*/) { return kComOk; }
void CoUninitialize() {}

ComResult CoCreateInstance(const GUID& class_id, std::uint32_t /*context*/, const GUID& interface_id,
                           ComObject& object) {
  return MakeObject("/", class_id, interface_id, object);
}

ComResult ComQueryInterface(ComObject object, const GUID& interface_id, ComObject& result) {
  result = nullptr;
  auto* counted = ObjectOf<CountedObject>(object);
  if (counted == nullptr) return kBadPointer;
  if (!counted->Has(interface_id)) return kComNoInterface;
  counted->Add();
  result = object;
  return kComOk;
}

void ComRelease(ComObject object) {
  auto* counted = ObjectOf<CountedObject>(object);
  if (counted != nullptr && counted->Release()) DeleteObject(counted);
}

void SetProcessLocale(const wchar_t* name) {
  // Locales have other names here; of those that callers give, this one has a counterpart.
  const std::string given = unicode::Utf8FromWide(name != nullptr ? name : L"");
  std::setlocale(LC_ALL, given == "chs" ? "zh_CN.UTF-8" : given.c_str());
}

}  // namespace velmora::os
