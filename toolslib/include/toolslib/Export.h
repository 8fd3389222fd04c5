#pragma once
// Symbols of the tools library that other libraries and programs may use (exported by the DLL on
// Windows when TOOLSLIB_BUILDING, imported by its users).
#if defined(_WIN32)
#if defined(TOOLSLIB_BUILDING)
#define TOOLSLIB_API __declspec(dllexport)
#else
#define TOOLSLIB_API __declspec(dllimport)
#endif
#else
#define TOOLSLIB_API __attribute__((visibility("default")))
#endif
