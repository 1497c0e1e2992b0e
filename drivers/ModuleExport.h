// How the two functions of a driver module are marked for export.
#pragma once

#if defined(_WIN32)
#define VOREL_MODULE_EXPORT extern "C" __declspec(dllexport)
#else
#define VOREL_MODULE_EXPORT extern "C" [[gnu::visibility("default")]]
#endif
