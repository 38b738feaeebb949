/// The maker's machine models. The library carries them for the maker's own programs; no operation of it reads
/// any, and none opens the model list.
///
/// The names of the models are product data. The option VELMORA_MODEL_NAMES names a file with them when the build
/// is configured (docs/model-names.md); its constants then stand in "network/model_names.h". Everything here is
/// constant before the library's first instruction runs.
#pragma once

namespace velmora::models {

/// Where the model list lies, relative to the maker's folder.
inline constexpr char kListPath[] = "\\config\\MachineTypeList.xml";

inline constexpr wchar_t kTwo[] = L"2";

}  // namespace velmora::models
