#pragma once
// ULOArray_NOSTL: a growable array with a small, stable interface for public signatures.
#include <cstddef>
#include <new>
#include <utility>
#include <vector>

template <class T>
class ULOArray_NOSTL {
public:
    ULOArray_NOSTL() = default;
    explicit ULOArray_NOSTL(size_t count, const T& value = T()) : items_(count, value) {}

    size_t GetSize() const { return items_.size(); }
    int GetCount() const { return static_cast<int>(items_.size()); }
    bool IsEmpty() const { return items_.empty(); }
    void SetSize(size_t count) { items_.resize(count); }
    void Add(const T& item) { items_.push_back(item); }
    void Add(T&& item) { items_.push_back(std::move(item)); }
    void RemoveAll() { items_.clear(); }
    void RemoveAt(size_t index) { items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(index)); }

    T& operator[](size_t i) { return items_[i]; }
    const T& operator[](size_t i) const { return items_[i]; }
    T* GetData() { return items_.data(); }
    const T* GetData() const { return items_.data(); }

    T* begin() { return items_.data(); }
    T* end() { return items_.data() + items_.size(); }
    const T* begin() const { return items_.data(); }
    const T* end() const { return items_.data() + items_.size(); }

    bool operator==(const ULOArray_NOSTL& o) const { return items_ == o.items_; }

private:
    std::vector<T> items_;
};
