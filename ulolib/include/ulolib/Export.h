#pragma once
// Symbols of the base library that other libraries and programs may use.
#define ULOLIB_API __attribute__((visibility("default")))
