#include "platform/os/firewall_policy.h"

#include <windows.h>

#include <netfw.h>
#include <oleauto.h>

namespace velmora::os {
namespace {

INetFwRule* Rule(ComObject rule) { return static_cast<INetFwRule*>(rule); }

/// Takes the object out of `value`, which keeps nothing.
ComObject TakeObject(VARIANT& value) {
  IUnknown* object = nullptr;
  if (value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN) {
    object = value.punkVal;
    value.vt = VT_EMPTY;
  }
  VariantClear(&value);
  return object;
}

}  // namespace

ComResult FirewallIsEnabled(ComObject policy, std::int32_t profile, VariantBool& enabled) {
  VARIANT_BOOL answer = VARIANT_FALSE;
  const HRESULT result = static_cast<INetFwPolicy2*>(policy)->get_FirewallEnabled(
      static_cast<NET_FW_PROFILE_TYPE2>(profile), &answer);
  if (SUCCEEDED(result)) enabled = answer;
  return result;
}

ComResult FirewallRules(ComObject policy, ComObject& enumerator) {
  enumerator = nullptr;
  INetFwRules* rules = nullptr;
  HRESULT result = static_cast<INetFwPolicy2*>(policy)->get_Rules(&rules);
  if (FAILED(result) || rules == nullptr) return FAILED(result) ? result : E_FAIL;
  IUnknown* unknown = nullptr;
  result = rules->get__NewEnum(&unknown);
  rules->Release();
  if (FAILED(result) || unknown == nullptr) return FAILED(result) ? result : E_FAIL;
  result = unknown->QueryInterface(__uuidof(IEnumVARIANT), &enumerator);
  unknown->Release();
  return result;
}

ComResult FirewallNextRule(ComObject enumerator, ComObject& rule) {
  VARIANT next;
  VariantInit(&next);
  ULONG fetched = 0;
  const HRESULT result = static_cast<IEnumVARIANT*>(enumerator)->Next(1, &next, &fetched);
  rule = TakeObject(next);
  if (result != S_OK && rule != nullptr) {  // the walk ends here, and nobody would give it back
    ComRelease(rule);
    rule = nullptr;
  }
  return result;
}

ComResult FirewallRuleDirection(ComObject rule, std::int32_t& direction) {
  NET_FW_RULE_DIRECTION answer{};
  const HRESULT result = Rule(rule)->get_Direction(&answer);
  if (SUCCEEDED(result)) direction = answer;
  return result;
}

ComResult FirewallRuleGrouping(ComObject rule, std::wstring& grouping) {
  BSTR text = nullptr;
  const HRESULT result = Rule(rule)->get_Grouping(&text);
  if (SUCCEEDED(result)) {
    try {
      grouping.assign(text != nullptr ? text : L"");
    } catch (...) {
      SysFreeString(text);
      throw;
    }
  }
  SysFreeString(text);
  return result;
}

ComResult FirewallRuleEnabled(ComObject rule, VariantBool& enabled) {
  VARIANT_BOOL answer = VARIANT_FALSE;
  const HRESULT result = Rule(rule)->get_Enabled(&answer);
  if (SUCCEEDED(result)) enabled = answer;
  return result;
}

ComResult FirewallRuleAction(ComObject rule, std::int32_t& action) {
  NET_FW_ACTION answer{};
  const HRESULT result = Rule(rule)->get_Action(&answer);
  if (SUCCEEDED(result)) action = answer;
  return result;
}

}  // namespace velmora::os
