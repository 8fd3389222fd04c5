// A program of a user of the installed library: one surface, one filled rectangle, one pixel read back.
#include <cstdio>

#include "ulogui/TrueColorDC.h"
#include "ulogui/Version.h"

int main() {
    ULOTrueColorDCBase dc(ULORect(0, 0, 8, 8), false, false);
    const ULORect rect(2, 2, 6, 6);
    dc.FillRect(&rect, CLR(10, 20, 30), 0);
    const bool ok = dc.GetPixel(3, 3) == CLR(10, 20, 30) && dc.GetPixel(7, 7) == CLR(0, 0, 0);
    std::printf("UloDrawLib %s: %s\n", ULODrawLibVersion(), ok ? "ok" : "wrong pixels");
    return ok ? 0 : 1;
}
