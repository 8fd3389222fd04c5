#pragma once
// The boundary of the UloDrawLib shared library: only declarations that carry ULODRAW_API are
// visible to its users; everything else is compiled with hidden visibility.
#define ULODRAW_API __attribute__((visibility("default")))
