#pragma once
// Symbols of the base library that other libraries and programs may use. On Windows the library is
// a DLL that exports them when it is built (ULOLIB_BUILDING) and its users import them.
#if defined(_WIN32)
#if defined(ULOLIB_BUILDING)
#define ULOLIB_API __declspec(dllexport)
#else
#define ULOLIB_API __declspec(dllimport)
#endif
#else
#define ULOLIB_API __attribute__((visibility("default")))
#endif
