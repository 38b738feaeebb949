#include "ostrine/windows/wmi_value.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "ostrine/windows/com_pointer.h"

namespace ostrine {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

VARIANT Signed32(LONG number) {
  VARIANT value{};
  value.vt = VT_I4;
  value.lVal = number;
  return value;
}

/// A value that lends `text`.
VARIANT Text(const ComText& text) {
  VARIANT value{};
  value.vt = VT_BSTR;
  value.bstrVal = text.Get();
  return value;
}

template <class Element>
void FillList(ComValue& value, VARTYPE type, const std::vector<Element>& elements) {
  VARIANT& variant = *value.Receive();
  variant.vt = static_cast<VARTYPE>(VT_ARRAY | type);
  variant.parray = SafeArrayCreateVector(type, 0, static_cast<ULONG>(elements.size()));
  void* data = nullptr;
  ASSERT_EQ(SafeArrayAccessData(variant.parray, &data), S_OK);
  std::copy(elements.begin(), elements.end(), static_cast<Element*>(data));
  SafeArrayUnaccessData(variant.parray);
}

TEST(WmiValue, ReadsASigned32BitVariantAsItsPropertySays) {
  EXPECT_EQ(WmiText(Signed32(-1), CIM_UINT32), L"4294967295");
  EXPECT_EQ(WmiNumber(Signed32(-1), CIM_UINT32), 4294967295u);
  EXPECT_EQ(WmiText(Signed32(-1), CIM_SINT32), L"-1");
  EXPECT_EQ(WmiNumber(Signed32(-1), CIM_SINT32), 0u) << "no unsigned number";
  EXPECT_EQ(WmiNumber(Signed32(65535), CIM_UINT16), 65535u);
}

TEST(WmiValue, ReadsNumbersOfEveryWidth) {
  VARIANT value{};
  value.vt = VT_UI1;
  value.bVal = 200;
  EXPECT_EQ(WmiText(value, CIM_UINT8), L"200");
  EXPECT_EQ(WmiNumber(value, CIM_UINT8), 200u);
  value.vt = VT_I2;
  value.iVal = -2;
  EXPECT_EQ(WmiText(value, CIM_SINT16), L"-2");
  EXPECT_EQ(WmiText(value, CIM_UINT16), L"65534");
  value.vt = VT_I8;
  value.llVal = -3;
  EXPECT_EQ(WmiText(value, CIM_SINT64), L"-3");
  value.vt = VT_UI8;
  value.ullVal = 18446744073709551615u;
  EXPECT_EQ(WmiText(value, CIM_UINT64), L"18446744073709551615");
  EXPECT_EQ(WmiNumber(value, CIM_UINT64), 0u) << "more than 32 bits";
  value.vt = VT_R4;
  value.fltVal = 0.5f;
  EXPECT_EQ(WmiText(value, CIM_REAL32), L"0.5");
  value.vt = VT_R8;
  value.dblVal = -1234.25;
  EXPECT_EQ(WmiText(value, CIM_REAL64), L"-1234.25");
  EXPECT_EQ(WmiNumber(value, CIM_REAL64), 0u);
}

TEST(WmiValue, Reads64BitNumbersThatCameAsText) {
  EXPECT_EQ(WmiNumber(Text(ComText(L"4294967295")), CIM_UINT64), 4294967295u);
  for (const wchar_t* text :
       {L"4294967296", L"18446744073709551616", L"99999999999999999999", L"-1", L"", L" 1", L"1 ", L"0x1"}) {
    EXPECT_EQ(WmiNumber(Text(ComText(text)), CIM_UINT64), 0u) << text;
  }
  EXPECT_EQ(WmiText(Text(ComText(L"8589934592")), CIM_UINT64), L"8589934592");
}

TEST(WmiValue, TakesATextForNoNumber) { EXPECT_EQ(WmiNumber(Text(ComText(L"7")), CIM_STRING), 0u); }

TEST(WmiValue, EndsATextBeforeItsFirstZero) {
  EXPECT_EQ(WmiText(Text(ComText(std::wstring_view(L"a\0b", 3))), CIM_STRING), L"a");
  VARIANT none{};
  none.vt = VT_BSTR;
  EXPECT_EQ(WmiText(none, CIM_STRING), L"") << "the null text is the empty one";
}

TEST(WmiValue, ReadsFlags) {
  VARIANT value{};
  value.vt = VT_BOOL;
  value.boolVal = VARIANT_TRUE;
  EXPECT_EQ(WmiText(value, CIM_BOOLEAN), L"True");
  EXPECT_EQ(WmiNumber(value, CIM_BOOLEAN), 1u);
  value.boolVal = VARIANT_FALSE;
  EXPECT_EQ(WmiText(value, CIM_BOOLEAN), L"False");
  EXPECT_EQ(WmiNumber(value, CIM_BOOLEAN), 0u);
}

TEST(WmiValue, IsEmptyForWhatHasNoText) {
  for (const VARTYPE type : {VT_EMPTY, VT_NULL, VT_UNKNOWN, VT_DISPATCH, VT_ERROR}) {
    VARIANT value{};
    value.vt = type;
    EXPECT_EQ(WmiText(value, CIM_OBJECT), L"");
    EXPECT_EQ(WmiNumber(value, CIM_OBJECT), 0u);
  }
}

TEST(WmiValue, TakesTheFirstElementOfAList) {
  ComValue numbers;
  FillList<LONG>(numbers, VT_I4, {-5, 6});
  EXPECT_EQ(WmiText(numbers.Get(), CIM_UINT32 | CIM_FLAG_ARRAY), L"4294967291");
  EXPECT_EQ(WmiNumber(numbers.Get(), CIM_UINT32 | CIM_FLAG_ARRAY), 4294967291u);
  ComValue texts;
  FillList<BSTR>(texts, VT_BSTR, {SysAllocString(L"one"), SysAllocString(L"two")});
  EXPECT_EQ(WmiText(texts.Get(), CIM_STRING | CIM_FLAG_ARRAY), L"one");
  ComValue none;
  FillList<LONG>(none, VT_I4, {});
  EXPECT_EQ(WmiText(none.Get(), CIM_UINT32 | CIM_FLAG_ARRAY), L"");
  VARIANT null{};
  null.vt = VT_ARRAY | VT_I4;
  EXPECT_EQ(WmiNumber(null, CIM_UINT32 | CIM_FLAG_ARRAY), 0u);
}

TEST(WmiValue, GivesTheBytesOfAByteListOnly) {
  ComValue bytes;
  FillList<unsigned char>(bytes, VT_UI1, {1, 0, 255});
  EXPECT_THAT(WmiBytes(bytes.Get()), ElementsAre(1, 0, 255));
  ComValue numbers;
  FillList<LONG>(numbers, VT_I4, {1, 2});
  EXPECT_THAT(WmiBytes(numbers.Get()), IsEmpty());
  EXPECT_THAT(WmiBytes(Signed32(1)), IsEmpty());
  VARIANT null{};
  null.vt = VT_ARRAY | VT_UI1;
  EXPECT_THAT(WmiBytes(null), IsEmpty());
}

}  // namespace
}  // namespace ostrine
