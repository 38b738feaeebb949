#include "network/model_table.h"

namespace velmora::models {

const char kListPath[] = "\\config\\MachineTypeList.xml";
const wchar_t kTextTwo[] = L"2";

}  // namespace velmora::models
