#pragma once
// A block of System V shared memory that the X server has attached through MIT-SHM: pixels written
// into it reach the server without passing through the connection.
#include <xcb/shm.h>
#include <xcb/xcb.h>

#include <cstddef>

namespace ulogui {
namespace platform {
namespace x11 {

class SharedSegment {
public:
    SharedSegment() = default;
    ~SharedSegment() { Release(); }
    SharedSegment(const SharedSegment&) = delete;
    SharedSegment& operator=(const SharedSegment&) = delete;

    // Makes the segment hold at least `bytes`, replacing a smaller one. The server must no longer be
    // reading the old one. False when the memory cannot be had or the server cannot attach it (a
    // server on another machine); the segment is then empty.
    bool Reserve(xcb_connection_t* connection, size_t bytes);
    // Detaches the segment from the server (after the requests already sent) and from this process.
    void Release();

    bool Holds(size_t bytes) const { return data_ != nullptr && size_ >= bytes; }
    unsigned char* Data() const { return data_; }
    xcb_shm_seg_t Id() const { return id_; }

private:
    xcb_connection_t* connection_ = nullptr;
    xcb_shm_seg_t id_ = 0;
    unsigned char* data_ = nullptr;
    size_t size_ = 0;
};

// Whether the server offers MIT-SHM and attaches this process's memory (it cannot from another machine).
bool ServerTakesSharedMemory(xcb_connection_t* connection);

}  // namespace x11
}  // namespace platform
}  // namespace ulogui
