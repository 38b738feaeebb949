/// The maker's machine models. The library carries them for the maker; no operation of it reads any of them,
/// and none opens the model list.
///
/// The models' names are product data, which a build is given by the option VELMORA_MODEL_NAMES
/// (docs/model-names.md); their constants then stand in "network/model_names.h". All of it is constant before
/// the library's first instruction runs and is never changed.
#pragma once

namespace velmora::models {

/// Where the model list lies below the maker's folder.
extern const char kListPath[];

/// The wide text that belongs to the table.
extern const wchar_t kTextTwo[];

}  // namespace velmora::models
