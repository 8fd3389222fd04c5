#include "platform/linux/GlyphCache.h"

#include <utility>

namespace ulogui {
namespace platform {
namespace ft {

GlyphCache& GlyphCache::Instance() {
    static GlyphCache* cache = new GlyphCache;
    return *cache;
}

void GlyphCache::Find(const GlyphKey* keys, size_t count, GlyphImagePtr* out) {
    std::lock_guard<std::mutex> lock(mutex_);
    for (size_t i = 0; i < count; ++i) {
        const auto found = index_.find(keys[i]);
        if (found == index_.end()) {
            out[i] = nullptr;
            continue;
        }
        order_.splice(order_.begin(), order_, found->second);
        out[i] = found->second->image;
    }
}

GlyphImagePtr GlyphCache::Keep(const GlyphKey& key, GlyphImagePtr image) {
    if (!image) {
        return image;
    }
    const size_t cost = CostOf(*image);
    std::lock_guard<std::mutex> lock(mutex_);
    const auto found = index_.find(key);
    if (found != index_.end()) {
        order_.splice(order_.begin(), order_, found->second);
        return found->second->image;
    }
    if (cost > budget_) {
        return image;
    }
    order_.push_front(Entry{key, image, cost});
    index_.emplace(key, order_.begin());
    bytes_ += cost;
    TrimLocked();
    return image;
}

void GlyphCache::ForgetFace(uint64_t face) {
    std::lock_guard<std::mutex> lock(mutex_);
    for (auto it = order_.begin(); it != order_.end();) {
        const auto next = std::next(it);
        if (it->key.face == face) {
            EraseLocked(it);
        }
        it = next;
    }
}

void GlyphCache::Clear() {
    Order doomed;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        index_.clear();
        doomed.swap(order_);
        bytes_ = 0;
    }
}

void GlyphCache::SetBudget(size_t bytes) {
    std::lock_guard<std::mutex> lock(mutex_);
    budget_ = bytes;
    TrimLocked();
}

size_t GlyphCache::Budget() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return budget_;
}

size_t GlyphCache::Bytes() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return bytes_;
}

size_t GlyphCache::Count() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return index_.size();
}

void GlyphCache::TrimLocked() {
    while (bytes_ > budget_ && !order_.empty()) {
        EraseLocked(std::prev(order_.end()));
    }
}

void GlyphCache::EraseLocked(Order::iterator it) {
    bytes_ -= it->cost;
    index_.erase(it->key);
    order_.erase(it);
}

}  // namespace ft
}  // namespace platform
}  // namespace ulogui
