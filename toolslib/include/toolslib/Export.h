#pragma once
#define TOOLSLIB_API __attribute__((visibility("default")))
