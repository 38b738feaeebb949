#include "platform/os/firewall_policy.h"

#include <windows.h>

#include <gtest/gtest.h>
#include <oleauto.h>

#include <atomic>
#include <thread>
#include <vector>

#include "tests/support/windows/unimplemented_firewall.h"

namespace velmora::os {
namespace {

using namespace windows_support;

constexpr GUID kFirewallPolicy{0xE2B3C97F, 0x6AE1, 0x41AC, {0x81, 0x7A, 0xF6, 0xF9, 0x21, 0x66, 0xD7, 0xDD}};
constexpr GUID kRuleInterface{0xAF230D27, 0xBABA, 0x4E42, {0xAC, 0xED, 0xF5, 0x24, 0xF2, 0x2C, 0xFC, 0xE2}};

class BlockedGroup : public UnimplementedRule {
 public:
  using UnimplementedRule::UnimplementedRule;
  HRESULT STDMETHODCALLTYPE get_Direction(NET_FW_RULE_DIRECTION* direction) override {
    *direction = NET_FW_RULE_DIR_OUT;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_Grouping(BSTR* grouping) override {
    *grouping = SysAllocString(L"@FirewallAPI.dll,-25000");
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_Enabled(VARIANT_BOOL* enabled) override {
    *enabled = VARIANT_TRUE;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_Action(NET_FW_ACTION* action) override {
    *action = NET_FW_ACTION_BLOCK;
    return S_OK;
  }
};

/// Yields a rule, then something that is no object, then an object together with the end.
class Enumerator : public FakeObject<IEnumVARIANT> {
 public:
  explicit Enumerator(std::atomic<int>& alive) : FakeObject(alive), alive_(alive) {}
  HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* values, ULONG* fetched) override {
    EXPECT_EQ(count, 1u);
    *fetched = 1;
    switch (step_++) {
      case 0:
        values->vt = VT_DISPATCH;
        values->pdispVal = new BlockedGroup(alive_);
        return S_OK;
      case 1:
        values->vt = VT_BSTR;
        values->bstrVal = SysAllocString(L"no rule");
        return S_OK;
      default:
        values->vt = VT_UNKNOWN;
        values->punkVal = new BlockedGroup(alive_);
        return S_FALSE;
    }
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Reset() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT**) override { return E_NOTIMPL; }

 private:
  std::atomic<int>& alive_;
  int step_ = 0;
};

class Rules : public UnimplementedRules {
 public:
  Rules(std::atomic<int>& alive, bool gives) : UnimplementedRules(alive), alive_(alive), gives_(gives) {}
  HRESULT STDMETHODCALLTYPE get__NewEnum(IUnknown** enumerator) override {
    *enumerator = gives_ ? new Enumerator(alive_) : nullptr;
    return S_OK;
  }

 private:
  std::atomic<int>& alive_;
  bool gives_;
};

class Policy : public UnimplementedPolicy {
 public:
  explicit Policy(std::atomic<int>& alive) : UnimplementedPolicy(alive), alive_(alive) {}
  HRESULT STDMETHODCALLTYPE get_FirewallEnabled(NET_FW_PROFILE_TYPE2 profile,
                                                VARIANT_BOOL* enabled) override {
    EXPECT_EQ(profile, NET_FW_PROFILE2_PUBLIC);
    *enabled = VARIANT_TRUE;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_Rules(INetFwRules** rules) override {
    *rules = has_rules ? new Rules(alive_, has_enumerator) : nullptr;
    return S_OK;
  }

  bool has_rules = true;
  bool has_enumerator = true;

 private:
  std::atomic<int>& alive_;
};

TEST(FirewallPolicy, GivesItsRulesAndKeepsNone) {
  std::atomic<int> alive{0};
  auto* const policy = new Policy(alive);
  VariantBool enabled = 0;
  EXPECT_EQ(FirewallIsEnabled(policy, 4, enabled), kComOk);
  EXPECT_EQ(enabled, kVariantTrue);

  ComObject rules = nullptr;
  ASSERT_EQ(FirewallRules(policy, rules), kComOk);
  ComObject next = nullptr;
  ASSERT_EQ(FirewallNextRule(rules, next), kComOk);
  ComObject rule = nullptr;
  ASSERT_EQ(ComQueryInterface(next, kRuleInterface, rule), kComOk);
  ComRelease(next);
  std::int32_t number = -1;
  EXPECT_EQ(FirewallRuleDirection(rule, number), kComOk);
  EXPECT_EQ(number, 2);
  EXPECT_EQ(FirewallRuleAction(rule, number), kComOk);
  EXPECT_EQ(number, 0);
  std::wstring grouping;
  EXPECT_EQ(FirewallRuleGrouping(rule, grouping), kComOk);
  EXPECT_EQ(grouping, L"@FirewallAPI.dll,-25000");
  EXPECT_EQ(FirewallRuleEnabled(rule, enabled), kComOk);
  EXPECT_EQ(enabled, kVariantTrue);
  ComRelease(rule);

  EXPECT_EQ(FirewallNextRule(rules, next), kComOk);
  EXPECT_EQ(next, nullptr) << "a text is no rule";
  EXPECT_EQ(FirewallNextRule(rules, next), 1);
  EXPECT_EQ(next, nullptr);
  ComRelease(rules);
  ComRelease(policy);
  EXPECT_EQ(alive, 0);
}

TEST(FirewallPolicy, FailsWhenASuccessBringsNoRules) {
  std::atomic<int> alive{0};
  auto* const policy = new Policy(alive);
  policy->has_enumerator = false;
  ComObject rules = policy;
  EXPECT_FALSE(ComSucceeded(FirewallRules(policy, rules)));
  EXPECT_EQ(rules, nullptr);
  policy->has_rules = false;
  EXPECT_FALSE(ComSucceeded(FirewallRules(policy, rules)));
  ComRelease(policy);
  EXPECT_EQ(alive, 0);
}

TEST(FirewallPolicy, OfThisSystemIsAskedForReal) {
  std::thread([] {
    ASSERT_TRUE(ComSucceeded(CoInitialize()));
    ComObject policy = nullptr;
    ASSERT_EQ(CoCreateInstance(kFirewallPolicy, 23, __uuidof(INetFwPolicy2), policy), kComOk);
    VariantBool enabled = 7;
    const ComResult result = FirewallIsEnabled(policy, 4, enabled);
    EXPECT_EQ(ComSucceeded(result), enabled != 7) << "written on success and only then";
    ComRelease(policy);
    CoUninitialize();
  }).join();
}

}  // namespace
}  // namespace velmora::os
