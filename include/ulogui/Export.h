#pragma once
// The boundary of the UloDrawLib shared library: only declarations that carry ULODRAW_API are
// visible to its users; everything else is compiled with hidden visibility. On Windows the library
// is a DLL: its own code (ULODRAW_BUILDING, set by the build for the library's parts) exports, and
// its users import through the import library.
#if defined(_WIN32)
#if defined(ULODRAW_BUILDING)
#define ULODRAW_API __declspec(dllexport)
#else
#define ULODRAW_API __declspec(dllimport)
#endif
#else
#define ULODRAW_API __attribute__((visibility("default")))
#endif
