// Construction, ownership and addressing of pixel buffers. Ownership mistakes show in the sanitizer
// build: a block freed twice or used after free aborts, a block never freed is reported as a leak.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <typeinfo>
#include <vector>

#include "ulogui/PictureBits.h"

namespace {

using ULOPictureUtil::ComputeLineWidth;

// Exposes the protected members that subclasses use.
class ExposedBits : public ULOPictureBits {
public:
    using ULOPictureBits::Reset;
    using ULOPictureBits::ULOPictureBits;
    bool OwnsBits() const { return ownsBits; }
};

unsigned char* MallocBlock(size_t size, unsigned char fill) {
    auto* block = static_cast<unsigned char*>(std::malloc(size));
    std::memset(block, fill, size);
    return block;
}

TEST(PictureBitsTest, LineWidthRoundsRowsToWholeWords) {
    EXPECT_EQ(ComputeLineWidth(1, 0), 4);
    EXPECT_EQ(ComputeLineWidth(7, 0), 28);  // 32-bit rows need no padding
    EXPECT_EQ(ComputeLineWidth(1, PICTBITS_ALPHA), 4);
    EXPECT_EQ(ComputeLineWidth(1, PICTBITS_RGB24), 4);
    EXPECT_EQ(ComputeLineWidth(2, PICTBITS_RGB24), 8);
    EXPECT_EQ(ComputeLineWidth(4, PICTBITS_RGB24), 12);
    EXPECT_EQ(ComputeLineWidth(5, PICTBITS_RGB24), 16);
    EXPECT_EQ(ComputeLineWidth(4, PICTBITS_MASK8), 4);
    EXPECT_EQ(ComputeLineWidth(5, PICTBITS_MASK8), 8);
    EXPECT_EQ(ComputeLineWidth(3, PICTBITS_MASK8 | PICTBITS_RGB24), 4);  // the mask flag wins
    EXPECT_EQ(ComputeLineWidth(0, 0), 0);
    EXPECT_EQ(ComputeLineWidth(-1, 0), -4);  // arithmetic shift of -1
    EXPECT_EQ(ComputeLineWidth(-1, PICTBITS_MASK8), 0);
}

TEST(PictureBitsTest, DefaultAndSizedBuffers) {
    const ULOPictureBits empty;
    EXPECT_EQ(empty.GetBytesPerPixel(), 4);
    EXPECT_EQ(empty.GetFlags(), 0);
    EXPECT_EQ(empty.GetBits(), nullptr);
    EXPECT_EQ(empty.GetSize(false), ULOSize(0, 0));
    EXPECT_EQ(empty.GetLineWidth(false), 0);
    EXPECT_FALSE(empty.IsMagnified());

    const ULOPictureBits rgb(ULOSize(5, 3), PICTBITS_RGB24);
    EXPECT_NE(rgb.GetBits(), nullptr);
    EXPECT_EQ(rgb.GetBytesPerPixel(), 3);
    EXPECT_EQ(rgb.GetLineWidth(true), 16);
    EXPECT_EQ(rgb.GetWidth(true), 5);
    EXPECT_EQ(rgb.GetHeight(false), 3);
    EXPECT_EQ(rgb.GetRect(false), ULORect(0, 0, 5, 3));
    EXPECT_EQ(ULOPictureBits(ULOSize(2, 2), PICTBITS_MASK8 | PICTBITS_RGB24).GetBytesPerPixel(), 1);
    EXPECT_EQ(ULOPictureBits(ULOSize(2, 2), PICTBITS_ALPHA).GetBytesPerPixel(), 4);
    // A zero or negative size owns no block at all.
    EXPECT_EQ(ULOPictureBits(ULOSize(0, 5), 0).GetBits(), nullptr);
    EXPECT_EQ(ULOPictureBits(ULOSize(-3, 5), 0).GetBits(), nullptr);
}

TEST(PictureBitsTest, PixelAddressesAreBottomUp) {
    ULOPictureBits b(ULOSize(2, 2), 0);
    unsigned char* bits = b.GetBits();
    EXPECT_EQ(b.GetBits(0, 0), bits + 8);  // the top row is the last in memory
    EXPECT_EQ(b.GetBits(0, 1), bits);
    EXPECT_EQ(b.GetBits(1, 0), bits + 12);
    const ULOPictureBits& constView = b;
    EXPECT_EQ(constView.GetBits(1, 1), bits + 4);

    ULOPictureBits rgb(ULOSize(5, 2), PICTBITS_RGB24);
    EXPECT_EQ(rgb.GetBits(4, 0), rgb.GetBits() + 16 + 12);
    ULOPictureBits mask(ULOSize(5, 3), PICTBITS_MASK8);
    EXPECT_EQ(mask.GetBits(3, 0), mask.GetBits() + 2 * 8 + 3);
    // A wrapped block keeps the stride it was given.
    std::vector<unsigned char> memory(3 * 20);
    ULOPictureBits wrapped(memory.data(), 2, 3, 20, 0);
    EXPECT_EQ(wrapped.GetBits(1, 0), memory.data() + 40 + 4);
}

TEST(PictureBitsTest, CopiesAreViewsAndFreeNothing) {
    ULOPictureBits owner(ULOSize(4, 4), 0);
    {
        const ULOPictureBits copy(owner);
        EXPECT_EQ(copy.GetBits(), owner.GetBits());
        EXPECT_EQ(copy.GetSize(false), owner.GetSize(false));
        ULOPictureBits assigned;
        assigned = owner;
        EXPECT_EQ(assigned.GetBits(), owner.GetBits());
    }
    owner.Fill(CLR(1, 2, 3), 4);  // still alive after both views are gone
    EXPECT_EQ(owner.GetPixel(3, 3), CLR(1, 2, 3));
}

TEST(PictureBitsTest, AssignmentDoesNotFreeTheTargetsBlock) {
    ExposedBits target(ULOSize(2, 2), 0);
    unsigned char* previous = target.GetBits();
    std::vector<unsigned char> memory(16, 7);
    static_cast<ULOPictureBits&>(target) = ULOPictureBits(memory.data(), 2, 2, 8, 0);
    EXPECT_FALSE(target.OwnsBits());
    EXPECT_EQ(target.GetBits(), memory.data());
    std::free(previous);  // still ours to free: freed twice would abort under the sanitizer
}

TEST(PictureBitsTest, CloneIsADeepOwningCopy) {
    std::vector<unsigned char> memory(2 * 12);
    for (size_t i = 0; i < memory.size(); ++i) {
        memory[i] = static_cast<unsigned char>(i);
    }
    const ULOPictureBits source(memory.data(), 2, 2, 12, PICTBITS_RGB24);  // a stride wider than needed
    ExposedBits clone;
    clone.Clone(source);
    EXPECT_TRUE(clone.OwnsBits());
    EXPECT_NE(clone.GetBits(), source.GetBits());
    EXPECT_EQ(clone.GetLineWidth(false), 12);
    EXPECT_EQ(clone.GetFlags(), PICTBITS_RGB24);
    EXPECT_EQ(clone.GetBytesPerPixel(), 3);
    EXPECT_EQ(std::memcmp(clone.GetBits(), memory.data(), memory.size()), 0);
    clone.GetBits()[0] = 200;
    EXPECT_EQ(memory[0], 0);

    // Cloning into an owning buffer leaves its old block to the caller.
    unsigned char* previous = clone.GetBits();
    clone.Clone(source);
    EXPECT_NE(clone.GetBits(), previous);
    std::free(previous);

    // A buffer may clone itself.
    unsigned char* before = clone.GetBits();
    clone.Clone(clone);
    EXPECT_EQ(std::memcmp(clone.GetBits(), before, memory.size()), 0);
    std::free(before);
}

TEST(PictureBitsTest, ResetTakesOwnershipOfTheGivenBlock) {
    ExposedBits b;
    b.Reset(MallocBlock(8, 0), 2, 1, 8, PICTBITS_MASK8 | PICTBITS_ALPHA);
    EXPECT_TRUE(b.OwnsBits());
    EXPECT_EQ(b.GetBytesPerPixel(), 1);
    EXPECT_EQ(b.GetLineWidth(false), 8);  // as given, not recomputed
    unsigned char* previous = b.GetBits();
    b.Reset(MallocBlock(16, 0), 2, 2, 8, 0);  // the previous block is not freed by Reset
    EXPECT_EQ(b.GetBytesPerPixel(), 4);
    std::free(previous);
}

TEST(PictureBitsTest, SwapExchangesOwnership) {
    std::vector<unsigned char> memory(12);
    ExposedBits owner(ULOSize(3, 3), PICTBITS_MASK8);
    unsigned char* ownedBlock = owner.GetBits();
    ExposedBits view(memory.data(), 1, 1, 12, PICTBITS_RGB24);
    owner.Swap(view);
    EXPECT_FALSE(owner.OwnsBits());
    EXPECT_TRUE(view.OwnsBits());
    EXPECT_EQ(view.GetBits(), ownedBlock);
    EXPECT_EQ(view.GetSize(false), ULOSize(3, 3));
    EXPECT_EQ(view.GetBytesPerPixel(), 1);
    EXPECT_EQ(owner.GetBytesPerPixel(), 3);
    EXPECT_EQ(owner.GetLineWidth(false), 12);
    // `view` now frees the mask block once, at the end of the test.
}

TEST(PictureBitsTest, HolderAndRawBitsAreViews) {
    ULOPictureBits owner(ULOSize(2, 3), PICTBITS_ALPHA);
    std::vector<unsigned char> memory(24);
    ULOPictureBitsHolder holder(memory.data(), 2, 3, 8, PICTBITS_ALPHA);
    ULOPictureBitsHolder copy(holder);
    ULOPictureBitsHolder moved(std::move(copy));
    EXPECT_EQ(moved.GetBits(), memory.data());
    EXPECT_EQ(copy.GetBits(), memory.data());  // a move leaves the source as it was
    ULOPictureBitsHolder assigned;
    assigned = holder;
    assigned = std::move(moved);
    EXPECT_EQ(assigned.GetBits(), memory.data());

    const ULOPictureBits raw = holder.GetRawPictureBits();
    EXPECT_EQ(typeid(raw), typeid(ULOPictureBits));
    EXPECT_EQ(raw.GetBits(), memory.data());
    EXPECT_EQ(raw.GetFlags(), PICTBITS_ALPHA);
    EXPECT_EQ(raw.GetLineWidth(false), 8);
    {
        const ULOPictureBits rawOfOwner = owner.GetRawPictureBits();
        EXPECT_EQ(rawOfOwner.GetBits(), owner.GetBits());
    }
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
    EXPECT_EQ(base.GetPixel(ULOPoint(5, 6)), CLR(5, 6, 99));
    EXPECT_EQ(base.GetRect(false), ULORect(0, 0, 4, 3));
    EXPECT_EQ(base.GetRect(true), ULORect(0, 0, 8, 6));
}

}  // namespace
