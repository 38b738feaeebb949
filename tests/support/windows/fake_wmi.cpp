#include "tests/support/windows/fake_wmi.h"

#include <gtest/gtest.h>

#include <utility>

#include "tests/support/windows/unimplemented_wmi.h"

namespace windows_support {
namespace {

constexpr wchar_t kFirmwareClass[] = L"VelmoraFirmware";

class Object : public UnimplementedClassObject {
 public:
  Object(FakeWmi& wmi, FakeRow row)
      : UnimplementedClassObject(wmi.objects), wmi_(wmi), row_(std::move(row)) {}

  HRESULT STDMETHODCALLTYPE Get(LPCWSTR name, LONG, VARIANT* value, CIMTYPE* type, LONG*) override {
    if (HRESULT result; wmi_.Fails(Step::kGet, result)) return result;
    const auto property = row_.find(name);
    if (property == row_.end()) return static_cast<HRESULT>(WBEM_E_NOT_FOUND);
    VariantInit(value);
    property->second.fill(*value);
    if (type != nullptr) *type = property->second.type;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Put(LPCWSTR name, LONG, VARIANT* value, CIMTYPE) override {
    if (HRESULT result; wmi_.Fails(Step::kPut, result)) return result;
    if (value->vt != VT_BSTR) return static_cast<HRESULT>(WBEM_E_TYPE_MISMATCH);
    row_[name] = TextProperty(value->bstrVal, CIM_UINT64);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetMethod(LPCWSTR name, LONG, IWbemClassObject** in,
                                      IWbemClassObject** out) override {
    *in = nullptr;
    if (HRESULT result; wmi_.Fails(Step::kGetMethod, result)) return result;
    if (std::wstring(name) != L"Evaluate") return static_cast<HRESULT>(WBEM_E_NOT_FOUND);
    if (out != nullptr) *out = nullptr;
    *in = new Object(wmi_, {});
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE SpawnInstance(LONG, IWbemClassObject** instance) override {
    *instance = nullptr;
    if (HRESULT result; wmi_.Fails(Step::kSpawn, result)) return result;
    *instance = new Object(wmi_, {});
    return S_OK;
  }

 private:
  FakeWmi& wmi_;
  FakeRow row_;
};

class Rows : public UnimplementedEnumerator {
 public:
  Rows(FakeWmi& wmi, std::vector<FakeRow> rows)
      : UnimplementedEnumerator(wmi.objects), wmi_(wmi), rows_(std::move(rows)) {}

  HRESULT STDMETHODCALLTYPE Next(LONG wait, ULONG count, IWbemClassObject** objects,
                                 ULONG* returned) override {
    EXPECT_EQ(count, 1u);
    wmi_.waits.push_back(wait);
    *returned = 0;
    *objects = nullptr;
    if (HRESULT result; wmi_.Fails(Step::kNext, result)) return result;
    if (next_ == rows_.size()) return WBEM_S_FALSE;
    *objects = new Object(wmi_, rows_[next_++]);
    *returned = 1;
    return S_OK;
  }

 private:
  FakeWmi& wmi_;
  std::vector<FakeRow> rows_;
  std::size_t next_ = 0;
};

/// An answer that is still to come.
class Pending : public UnimplementedCallResult {
 public:
  Pending(FakeWmi& wmi, FakeRow row)
      : UnimplementedCallResult(wmi.objects), wmi_(wmi), row_(std::move(row)) {}

  HRESULT STDMETHODCALLTYPE GetResultObject(LONG wait, IWbemClassObject** object) override {
    wmi_.waits.push_back(wait);
    *object = nullptr;
    if (HRESULT result; wmi_.Fails(Step::kResultObject, result)) return result;
    *object = new Object(wmi_, row_);
    return S_OK;
  }

 private:
  FakeWmi& wmi_;
  FakeRow row_;
};

class Services : public UnimplementedServices {
 public:
  explicit Services(FakeWmi& wmi) : UnimplementedServices(wmi.objects), wmi_(wmi) { ++wmi_.connections; }

  HRESULT STDMETHODCALLTYPE ExecQuery(const BSTR language, const BSTR query, LONG flags, IWbemContext*,
                                      IEnumWbemClassObject** rows) override {
    EXPECT_STREQ(language, L"WQL");
    wmi_.queries.emplace_back(query, SysStringLen(query));
    const std::wstring text = query;
    const auto start = text.find(L"FROM ") + 5;
    return Enumerate(Step::kExecQuery, text.substr(start, text.find(L' ', start) - start), flags, rows);
  }
  HRESULT STDMETHODCALLTYPE CreateInstanceEnum(const BSTR name, LONG flags, IWbemContext*,
                                               IEnumWbemClassObject** rows) override {
    return Enumerate(Step::kListInstances, name, flags, rows);
  }
  HRESULT STDMETHODCALLTYPE GetObject(const BSTR path, LONG flags, IWbemContext*, IWbemClassObject** object,
                                      IWbemCallResult** call) override {
    *object = nullptr;
    *call = nullptr;
    if (HRESULT result; wmi_.Fails(Step::kGetClass, result)) return result;
    if (!wmi_.has_firmware || std::wstring(path) != kFirmwareClass) {
      return static_cast<HRESULT>(WBEM_E_NOT_FOUND);
    }
    looked_up_ = true;
    Answer({}, flags, object, call);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE ExecMethod(const BSTR path, const BSTR method, LONG flags, IWbemContext*,
                                       IWbemClassObject* arguments, IWbemClassObject** out,
                                       IWbemCallResult** call) override {
    *out = nullptr;
    *call = nullptr;
    EXPECT_STREQ(method, L"Evaluate");
    wmi_.called_paths.emplace_back(path);
    if (!looked_up_) ++wmi_.calls_without_class;
    if (HRESULT result; wmi_.Fails(Step::kExecMethod, result)) return result;
    VARIANT input;
    VariantInit(&input);
    if (FAILED(arguments->Get(L"InData", 0, &input, nullptr, nullptr))) {
      return static_cast<HRESULT>(WBEM_E_INVALID_METHOD_PARAMETERS);
    }
    Answer(wmi_.firmware(input.bstrVal), flags, out, call);
    VariantClear(&input);
    return S_OK;
  }

 protected:
  ~Services() override { --wmi_.connections; }

 private:
  HRESULT Enumerate(Step step, const std::wstring& name, LONG flags, IEnumWbemClassObject** rows) {
    EXPECT_EQ(flags, WBEM_FLAG_FORWARD_ONLY | WBEM_FLAG_RETURN_IMMEDIATELY);
    *rows = nullptr;
    if (HRESULT result; wmi_.Fails(step, result)) return result;
    const auto table = wmi_.tables.find(name);
    if (table == wmi_.tables.end()) return static_cast<HRESULT>(WBEM_E_INVALID_CLASS);
    *rows = new Rows(wmi_, table->second);
    return S_OK;
  }
  void Answer(FakeRow row, LONG flags, IWbemClassObject** object, IWbemCallResult** call) {
    EXPECT_EQ(flags, WBEM_FLAG_RETURN_IMMEDIATELY) << "a call that may take for ever";
    if (wmi_.calls_return_at_once) {
      *call = new Pending(wmi_, std::move(row));
    } else {
      *object = new Object(wmi_, std::move(row));
    }
  }

  FakeWmi& wmi_;
  bool looked_up_ = false;
};

class Locator : public FakeObject<IWbemLocator> {
 public:
  explicit Locator(FakeWmi& wmi) : FakeObject(wmi.objects), wmi_(wmi) {}

  HRESULT STDMETHODCALLTYPE ConnectServer(const BSTR, const BSTR, const BSTR, const BSTR, LONG flags,
                                          const BSTR, IWbemContext*, IWbemServices** services) override {
    wmi_.connect_flags = flags;
    *services = nullptr;
    if (HRESULT result; wmi_.Fails(Step::kConnect, result)) return result;
    *services = new Services(wmi_);
    return S_OK;
  }

 private:
  FakeWmi& wmi_;
};

class Factory : public FakeObject<IClassFactory> {
 public:
  Factory(FakeWmi& wmi, std::atomic<int>& count) : FakeObject(count), wmi_(wmi) {}

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID id, void** object) override {
    *object = nullptr;
    if (HRESULT result; wmi_.Fails(Step::kCreateLocator, result)) return result;
    auto* locator = new Locator(wmi_);
    const HRESULT result = locator->QueryInterface(id, object);
    locator->Release();
    return result;
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  FakeWmi& wmi_;
};

std::atomic<int> factories{0};

}  // namespace

FakeProperty TextProperty(std::wstring text, CIMTYPE type) {
  return {[text = std::move(text)](VARIANT& value) {
            value.vt = VT_BSTR;
            value.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
          },
          type};
}

FakeProperty NumberProperty(LONG number, CIMTYPE type) {
  return {[number](VARIANT& value) {
            value.vt = VT_I4;
            value.lVal = number;
          },
          type};
}

FakeProperty BytesProperty(std::vector<std::uint8_t> bytes) {
  return {[bytes = std::move(bytes)](VARIANT& value) {
            value.vt = VT_ARRAY | VT_UI1;
            value.parray = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(bytes.size()));
            for (std::size_t i = 0; i < bytes.size(); ++i) {
              LONG index = static_cast<LONG>(i);
              auto byte = bytes[i];
              SafeArrayPutElement(value.parray, &index, &byte);
            }
          },
          CIM_UINT8 | CIM_FLAG_ARRAY};
}

FakeWmi::FakeWmi() : factory_(new Factory(*this, factories)) {
  EXPECT_EQ(CoRegisterClassObject(__uuidof(WbemLocator), factory_, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                                  &registration_),
            S_OK);
}

FakeWmi::~FakeWmi() {
  CoRevokeClassObject(registration_);
  factory_->Release();
  EXPECT_EQ(objects, 0) << "objects of WMI were not given back";
}

bool FakeWmi::Fails(Step step, HRESULT& result) const {
  const auto answer = answers.find(step);
  if (answer == answers.end()) return false;
  result = answer->second;
  return true;
}

}  // namespace windows_support
