#pragma once
// Integer geometry shared by every family. Rectangles exclude their right and bottom edges.
#include <cstdint>

struct ULOPoint {
    int32_t x = 0;
    int32_t y = 0;
    ULOPoint() = default;
    ULOPoint(int32_t px, int32_t py) : x(px), y(py) {}
    bool operator==(const ULOPoint& o) const { return x == o.x && y == o.y; }
    bool operator!=(const ULOPoint& o) const { return !(*this == o); }
};

struct ULOSize {
    int32_t cx = 0;
    int32_t cy = 0;
    ULOSize() = default;
    ULOSize(int32_t w, int32_t h) : cx(w), cy(h) {}
    bool operator==(const ULOSize& o) const { return cx == o.cx && cy == o.cy; }
    bool operator!=(const ULOSize& o) const { return !(*this == o); }
};

struct ULORect {
    int32_t left = 0;
    int32_t top = 0;
    int32_t right = 0;
    int32_t bottom = 0;
    ULORect() = default;
    ULORect(int32_t l, int32_t t, int32_t r, int32_t b) : left(l), top(t), right(r), bottom(b) {}
    ULORect(const ULOPoint& topLeft, const ULOSize& size)
        : left(topLeft.x), top(topLeft.y), right(topLeft.x + size.cx), bottom(topLeft.y + size.cy) {}

    int32_t Width() const { return right - left; }
    int32_t Height() const { return bottom - top; }
    ULOSize Size() const { return ULOSize(Width(), Height()); }
    ULOPoint TopLeft() const { return ULOPoint(left, top); }
    bool IsEmpty() const { return left >= right || top >= bottom; }
    bool Contains(const ULOPoint& p) const {
        return p.x >= left && p.x < right && p.y >= top && p.y < bottom;
    }
    void Offset(int32_t dx, int32_t dy) {
        left += dx;
        right += dx;
        top += dy;
        bottom += dy;
    }
    // The common part of both; empty (all zero) when they do not overlap.
    ULORect Intersect(const ULORect& o) const {
        ULORect r(left > o.left ? left : o.left, top > o.top ? top : o.top, right < o.right ? right : o.right,
                  bottom < o.bottom ? bottom : o.bottom);
        return r.IsEmpty() ? ULORect() : r;
    }
    bool operator==(const ULORect& o) const {
        return left == o.left && top == o.top && right == o.right && bottom == o.bottom;
    }
    bool operator!=(const ULORect& o) const { return !(*this == o); }
};
