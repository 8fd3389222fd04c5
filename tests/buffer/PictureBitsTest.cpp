// Construction, ownership and addressing of pixel buffers.
#include <typeinfo>

#include "PictureBitsTestSupport.h"

namespace {

TEST(PictureBitsTest, LineWidthRoundsRowsToWholeWords) {
    const int rgb = PICTBITS_RGB24, mask = PICTBITS_MASK8;
    // 32-bit rows need no padding; the mask flag wins over RGB24; -1 is shifted arithmetically.
    const std::tuple<int, int, int> cases[] = {
        {1, 0, 4},          {7, 0, 28},   {1, PICTBITS_ALPHA, 4}, {1, rgb, 4},  {2, rgb, 8},
        {4, rgb, 12},       {5, rgb, 16}, {4, mask, 4},           {5, mask, 8}, {0, 0, 0},
        {3, mask | rgb, 4}, {-1, 0, -4},  {-1, mask, 0}};
    for (auto [width, flags, expected] : cases) {
        EXPECT_EQ(ULOPictureUtil::ComputeLineWidth(width, flags), expected) << width << " flags " << flags;
    }
}

TEST(PictureBitsTest, DefaultAndSizedBuffers) {
    EXPECT_EQ(ShapeOf(ULOPictureBits()), Shape(0, 0, 0, 4, 0, nullptr));
    const ULOPictureBits rgb(ULOSize(5, 3), PICTBITS_RGB24);
    EXPECT_EQ(ShapeOf(rgb), Shape(5, 3, 16, 3, PICTBITS_RGB24, rgb.GetBits()));
    EXPECT_NE(rgb.GetBits(), nullptr);
    EXPECT_EQ(rgb.GetRect(false), ULORect(0, 0, 5, 3));
    EXPECT_EQ(
        std::make_tuple(ULOPictureBits(ULOSize(2, 2), PICTBITS_MASK8 | PICTBITS_RGB24).GetBytesPerPixel(),
                        ULOPictureBits(ULOSize(2, 2), PICTBITS_ALPHA).GetBytesPerPixel()),
        std::make_tuple(1, 4));
    // A zero or negative size owns no block at all.
    EXPECT_TRUE(ULOPictureBits(ULOSize(0, 5), 0).GetBits() == nullptr &&
                ULOPictureBits(ULOSize(-3, 5), 0).GetBits() == nullptr);
}

TEST(PictureBitsTest, PixelAddressesAreBottomUp) {
    ULOPictureBits b(ULOSize(2, 2), 0), rgb(ULOSize(5, 2), PICTBITS_RGB24),
        mask(ULOSize(5, 3), PICTBITS_MASK8);
    std::vector<unsigned char> memory(3 * 20);
    ULOPictureBits wrapped(memory.data(), 2, 3, 20, 0);  // keeps the stride it was given
    const std::tuple<const ULOPictureBits&, int, int, ptrdiff_t> cases[] = {
        {b, 0, 0, 8},           {b, 0, 1, 0},         {b, 1, 0, 12},
        {b, 1, 1, 4},           {rgb, 4, 0, 16 + 12}, {mask, 3, 0, 2 * 8 + 3},
        {wrapped, 1, 0, 40 + 4}};
    for (const auto& [buffer, x, y, offset] : cases) {
        EXPECT_EQ(buffer.GetBits(x, y) - buffer.GetBits(), offset) << x << "," << y;
    }
}

TEST(PictureBitsTest, CopiesAndAssignmentsAreViewsAndFreeNothing) {
    ULOPictureBits owner(ULOSize(4, 4), 0);
    {
        const ULOPictureBits copy(owner);
        ULOPictureBits assigned;
        assigned = owner;
        EXPECT_EQ(std::make_tuple(ShapeOf(copy), ShapeOf(assigned)),
                  std::make_tuple(ShapeOf(owner), ShapeOf(owner)));
    }
    owner.Fill(CLR(1, 2, 3), 4);  // still alive after both views are gone
    EXPECT_EQ(owner.GetPixel(3, 3), CLR(1, 2, 3));

    // Assigning to an owning buffer leaves its old block to the caller.
    ExposedBits target(ULOSize(2, 2), 0);
    unsigned char* previous = target.GetBits();
    std::vector<unsigned char> memory(16, 7);
    static_cast<ULOPictureBits&>(target) = ULOPictureBits(memory.data(), 2, 2, 8, 0);
    EXPECT_EQ(std::make_tuple(target.OwnsBits(), target.GetBits()), std::make_tuple(false, memory.data()));
    std::free(previous);  // freed twice would abort under the sanitizer
}

TEST(PictureBitsTest, CloneIsADeepOwningCopyAndLeavesTheOldBlock) {
    std::vector<unsigned char> memory(2 * 12);
    for (size_t i = 0; i < memory.size(); ++i) {
        memory[i] = static_cast<unsigned char>(i);
    }
    const ULOPictureBits source(memory.data(), 2, 2, 12, PICTBITS_RGB24);  // a stride wider than needed
    ExposedBits clone;
    clone.Clone(source);
    EXPECT_TRUE(clone.OwnsBits() && clone.GetBits() != source.GetBits());
    EXPECT_EQ(ShapeOf(clone), Shape(2, 2, 12, 3, PICTBITS_RGB24, clone.GetBits()));
    EXPECT_EQ(Bytes(clone), memory);
    unsigned char* previous = clone.GetBits();
    clone.Clone(clone);  // a buffer may clone itself
    EXPECT_EQ(std::make_tuple(clone.GetBits() != previous, Bytes(clone)), std::make_tuple(true, memory));
    std::free(previous);
}

TEST(PictureBitsTest, ResetTakesOwnershipAndSwapExchangesIt) {
    ExposedBits b;
    b.Reset(static_cast<unsigned char*>(std::calloc(8, 1)), 2, 1, 8, PICTBITS_MASK8 | PICTBITS_ALPHA);
    EXPECT_TRUE(b.OwnsBits());
    EXPECT_EQ(ShapeOf(b),
              Shape(2, 1, 8, 1, PICTBITS_MASK8 | PICTBITS_ALPHA, b.GetBits()));  // stride as given
    unsigned char* previous = b.GetBits();
    b.Reset(static_cast<unsigned char*>(std::calloc(16, 1)), 2, 2, 8, 0);  // the previous block is not freed
    EXPECT_EQ(b.GetBytesPerPixel(), 4);
    std::free(previous);

    std::vector<unsigned char> memory(12);
    ExposedBits view(memory.data(), 1, 1, 12, PICTBITS_RGB24);
    const Shape ownerShape = ShapeOf(b);
    b.Swap(view);
    EXPECT_TRUE(!b.OwnsBits() && view.OwnsBits());  // the view frees the block at the end of the test
    EXPECT_EQ(std::make_tuple(ShapeOf(view), ShapeOf(b)),
              std::make_tuple(ownerShape, Shape(1, 1, 12, 3, PICTBITS_RGB24, memory.data())));
}

TEST(PictureBitsTest, HolderAndRawBitsAreViews) {
    std::vector<unsigned char> memory(24);
    ULOPictureBitsHolder holder(memory.data(), 2, 3, 8, PICTBITS_ALPHA);
    ULOPictureBitsHolder copy(holder);
    ULOPictureBitsHolder moved(std::move(copy)), assigned;
    EXPECT_EQ(copy.GetBits(), memory.data());  // a move leaves the source as it was
    assigned = holder;
    assigned = std::move(moved);
    EXPECT_EQ(ShapeOf(assigned), ShapeOf(holder));

    const ULOPictureBits raw = holder.GetRawPictureBits();
    EXPECT_TRUE(typeid(raw) == typeid(ULOPictureBits));
    EXPECT_EQ(ShapeOf(raw), Shape(2, 3, 8, 4, PICTBITS_ALPHA, memory.data()));
    ULOPictureBits owner(ULOSize(2, 3), PICTBITS_ALPHA);
    { const ULOPictureBits rawOfOwner = owner.GetRawPictureBits(); }
    owner.Fill(CLR(0, 0, 0), 0);  // the owner's block survived its raw view
}

// A subclass that answers pixel and size queries itself, as pictures and surfaces do.
class Overriding : public ULOPictureBits {
public:
    CLR GetPixel(int x, int y) const override { return CLR(x, y, 99); }
    using ULOPictureBits::GetPixel;
    ULOSize GetSize(bool magnified) const override { return magnified ? ULOSize(8, 6) : ULOSize(4, 3); }
};

TEST(PictureBitsTest, PointAndRectQueriesGoThroughTheVirtualOverloads) {
    const Overriding o;
    const ULOPictureBits& base = o;
    EXPECT_EQ(std::make_tuple(base.GetPixel(ULOPoint(5, 6)), base.GetRect(false), base.GetRect(true)),
              std::make_tuple(CLR(5, 6, 99), ULORect(0, 0, 4, 3), ULORect(0, 0, 8, 6)));
}

}  // namespace
