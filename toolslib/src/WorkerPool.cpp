#include "WorkerPool.h"

#include <algorithm>
#include <atomic>
#include <climits>
#include <system_error>

namespace tools {
namespace multiproc {
namespace detail {

namespace {
// Constant-initialised and trivially destructible, so it can still be read while other static
// objects are destroyed after the pool (their destructors may run parallel sections).
std::atomic<bool> poolShutDown{false};
}  // namespace

int HardwareThreadCount() {
    const unsigned n = std::thread::hardware_concurrency();
    return n == 0 ? 1 : static_cast<int>(std::min<unsigned>(n, INT_MAX));
}

WorkerPool* WorkerPool::Instance() {
    if (poolShutDown.load(std::memory_order_acquire)) {
        return nullptr;
    }
    // A function-local static: created on first use, and destroyed (workers joined) at exit or
    // when the library is unloaded, before leak checkers look at the heap.
    static WorkerPool pool(HardwareThreadCount());
    return &pool;
}

WorkerPool::WorkerPool(int workerCount) {
    workers_.reserve(static_cast<size_t>(workerCount));
    for (int i = 0; i < workerCount; ++i) {
        try {
            workers_.emplace_back([this] { WorkerMain(); });
        } catch (const std::system_error&) {
            // Out of threads: work with those we have; sections always run on their caller too.
            break;
        }
    }
}

WorkerPool::~WorkerPool() {
    poolShutDown.store(true, std::memory_order_release);
    {
        std::lock_guard<std::mutex> lock(mutex_);
        stopping_ = true;
    }
    queueChanged_.notify_all();
    for (std::thread& worker : workers_) {
        // exit() called from inside a loop body runs this destructor on a worker; it cannot join itself.
        if (worker.get_id() == std::this_thread::get_id()) {
            worker.detach();
        } else {
            worker.join();
        }
    }
}

void WorkerPool::Post(const Task& task, int copies) {
    if (copies <= 0) {
        return;
    }
    {
        std::lock_guard<std::mutex> lock(mutex_);
        if (stopping_) {
            return;
        }
        for (int i = 0; i < copies; ++i) {
            queue_.push_back(task);
        }
    }
    if (copies == 1) {
        queueChanged_.notify_one();
    } else {
        queueChanged_.notify_all();
    }
}

void WorkerPool::WorkerMain() {
    for (;;) {
        Task task;
        {
            std::unique_lock<std::mutex> lock(mutex_);
            queueChanged_.wait(lock, [this] { return stopping_ || !queue_.empty(); });
            if (stopping_) {
                // Queued tasks hold only shared state of sections whose callers never wait for
                // helpers that have not started, so dropping them loses no work.
                queue_.clear();
                return;
            }
            task = std::move(queue_.front());
            queue_.pop_front();
        }
        task();
    }
}

}  // namespace detail
}  // namespace multiproc
}  // namespace tools
