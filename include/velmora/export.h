/// `VELMORA_API` marks what the library exports. A host needs nothing of this file but the include.
#pragma once

#if defined(_WIN32)
#if defined(VELMORA_BUILDING)
#define VELMORA_API __declspec(dllexport)
#else
#define VELMORA_API __declspec(dllimport)
#endif
#else
#define VELMORA_API __attribute__((visibility("default")))
#endif
