// System V shared memory attached to the X server.
#include "platform/linux/X11SharedSegment.h"

#include <sys/ipc.h>
#include <sys/shm.h>

#include <cstdlib>

namespace ulogui {
namespace platform {
namespace x11 {

namespace {
constexpr size_t kGranule = 1 << 16;  // segments grow in steps, so a window growing by a few pixels does not
                                      // make a new one each time
}

bool SharedSegment::Reserve(xcb_connection_t* connection, size_t bytes) {
    if (connection_ == connection && Holds(bytes)) {
        return true;
    }
    Release();
    const size_t size = (bytes + kGranule - 1) / kGranule * kGranule;
    const int shmId = shmget(IPC_PRIVATE, size, IPC_CREAT | 0600);
    if (shmId < 0) {
        return false;
    }
    void* address = shmat(shmId, nullptr, 0);
    if (address == reinterpret_cast<void*>(-1)) {
        shmctl(shmId, IPC_RMID, nullptr);
        return false;
    }
    const xcb_shm_seg_t id = xcb_generate_id(connection);
    xcb_generic_error_t* error = xcb_request_check(
        connection, xcb_shm_attach_checked(connection, id, static_cast<uint32_t>(shmId), 1));
    // Once both sides are attached, marking the segment removed frees it when the last one detaches,
    // even if this process dies.
    shmctl(shmId, IPC_RMID, nullptr);
    if (error != nullptr || xcb_connection_has_error(connection)) {
        std::free(error);
        shmdt(address);
        return false;
    }
    connection_ = connection;
    id_ = id;
    data_ = static_cast<unsigned char*>(address);
    size_ = size;
    return true;
}

void SharedSegment::Release() {
    if (data_ == nullptr) {
        return;
    }
    if (!xcb_connection_has_error(connection_)) {
        xcb_shm_detach(connection_, id_);
    }
    // The server keeps its own mapping until it handles the detach, after every put that reads it.
    shmdt(data_);
    data_ = nullptr;
    size_ = 0;
    connection_ = nullptr;
}

bool ServerTakesSharedMemory(xcb_connection_t* connection) {
    const xcb_query_extension_reply_t* extension = xcb_get_extension_data(connection, &xcb_shm_id);
    if (extension == nullptr || !extension->present) {
        return false;
    }
    xcb_shm_query_version_reply_t* version =
        xcb_shm_query_version_reply(connection, xcb_shm_query_version(connection), nullptr);
    if (version == nullptr) {
        return false;
    }
    std::free(version);
    SharedSegment probe;
    return probe.Reserve(connection, 1);
}

}  // namespace x11
}  // namespace platform
}  // namespace ulogui
