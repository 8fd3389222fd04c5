// Programs link against the shared library and reach it only through exported symbols.
#include <gtest/gtest.h>

#include "ulogui/Version.h"

TEST(Boundary, VersionIsReachableThroughTheSharedLibrary) {
    EXPECT_STREQ("0.1.0", ULODrawLibVersion());
}
