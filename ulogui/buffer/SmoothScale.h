#pragma once
// The smooth scaling of ULOPictureBits::EnlargeSmooth with a choice of where its output columns run.
// EnlargeSmooth itself runs small outputs column by column on the calling thread (stepping its progress
// per column) and larger ones on the tools library's workers. A caller that scales many small pictures
// one after another (picture drawing on a magnified surface) computes all columns at once on its own
// thread instead: the same bytes, without handing each picture to the workers.
#include "ulogui/Geometry.h"
#include "ulogui/PictureBits.h"

namespace ulogui {
namespace buffer {

enum class ColumnThreads {
    kBySize,  // as EnlargeSmooth: serially below 40 x 40, else on the workers
    // Every column in one strip on the calling thread; output pixels that the picture does not reach
    // (a margin where rounding changed the aspect) are set to 0 instead of being left as they were.
    kCallingThreadAtOnce,
};

// EnlargeSmooth(from -> to, targetRect) with the columns run as `threads` says.
void ScaleSmooth(const ULOPictureBits& from, ULOPictureBits& to, const ULORect* targetRect,
                 ColumnThreads threads);

}  // namespace buffer
}  // namespace ulogui
