#pragma once
// The glyph images of text output, rasterised once and kept per face, size, style and glyph in one
// process-wide cache with a memory budget. When the images kept cost more than the budget, the
// least recently used leave first. Images are immutable and handed out as shared pointers, so an
// image that leaves the cache while a caller draws with it stays alive until that caller lets go.
//
// Every member takes the cache's own lock: the cache is safe from any thread, whoever else is
// held (callers hold the FreeType library's lock and the surface's text lock around it; the cache
// never takes either, so there is one lock order).
#include <cstddef>
#include <cstdint>
#include <list>
#include <mutex>
#include <unordered_map>

#include "platform/FontEngine.h"

namespace ulogui {
namespace platform {
namespace ft {

struct GlyphKey {
    uint64_t face = 0;  // the face's serial number; numbers are never reused
    uint32_t pixelsPerEm = 0;
    uint32_t glyph = 0;
    uint32_t style = 0;  // the GlyphStyle bits the image was made with

    bool operator==(const GlyphKey& o) const {
        return face == o.face && pixelsPerEm == o.pixelsPerEm && glyph == o.glyph && style == o.style;
    }
};

namespace glyphstyle {
constexpr uint32_t kBold = 1;    // synthesised bold
constexpr uint32_t kItalic = 2;  // synthesised italic
constexpr uint32_t kGrey = 4;    // grey levels (else two levels, as the face's 'gasp' table asks)
}  // namespace glyphstyle

class GlyphCache {
public:
    static constexpr size_t kDefaultBudget = size_t{4} << 20;
    // What an entry costs beyond its coverage bytes: the image, the list and index nodes.
    static constexpr size_t kEntryOverhead = 160;

    // The process-wide cache (never destroyed: fonts may outlive static destruction).
    static GlyphCache& Instance();

    explicit GlyphCache(size_t budget = kDefaultBudget) : budget_(budget) {}
    GlyphCache(const GlyphCache&) = delete;
    GlyphCache& operator=(const GlyphCache&) = delete;

    // Looks count keys up under one lock: out[i] is the image kept for keys[i] (now the most
    // recently used), or null.
    void Find(const GlyphKey* keys, size_t count, GlyphImagePtr* out);
    // Keeps image under key and returns what the cache holds for it afterwards: the image kept
    // earlier by another thread, if any, else image. An image that alone costs more than the
    // budget is returned without being kept.
    GlyphImagePtr Keep(const GlyphKey& key, GlyphImagePtr image);
    // Drops every image of a face (the face is being closed).
    void ForgetFace(uint64_t face);
    void Clear();

    // Changes the budget (bytes), letting images go at once if the new one is exceeded.
    void SetBudget(size_t bytes);
    size_t Budget() const;
    size_t Bytes() const;  // what the kept images cost now
    size_t Count() const;

    static size_t CostOf(const GlyphImage& image) { return image.levels.size() + kEntryOverhead; }

private:
    struct Entry {
        GlyphKey key;
        GlyphImagePtr image;
        size_t cost = 0;
    };
    struct KeyHash {
        size_t operator()(const GlyphKey& k) const {
            uint64_t h = k.face * 0x9E3779B97F4A7C15ull;
            h ^= (static_cast<uint64_t>(k.pixelsPerEm) << 40) ^ (static_cast<uint64_t>(k.style) << 32) ^
                 k.glyph;
            return static_cast<size_t>(h ^ (h >> 29));
        }
    };
    using Order = std::list<Entry>;

    void TrimLocked();
    void EraseLocked(Order::iterator it);

    mutable std::mutex mutex_;
    Order order_;  // most recently used first
    std::unordered_map<GlyphKey, Order::iterator, KeyHash> index_;
    size_t budget_;
    size_t bytes_ = 0;
};

}  // namespace ft
}  // namespace platform
}  // namespace ulogui
