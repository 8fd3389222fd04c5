#include "WorkerPool.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <climits>
#include <system_error>

namespace tools {
namespace multiproc {
namespace detail {

namespace {
// How long a worker that ran out of tasks keeps looking for the next one before it sleeps. Loops
// are often started back to back (a picture scaled after another), and waking a sleeping thread
// costs tens of microseconds, as much as a small section's whole share of work.
constexpr std::chrono::microseconds kSpinBeforeSleep{200};

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
#if defined(_WIN32)
    // On Windows the pool lives as long as the process: the library is a DLL whose static objects
    // are destroyed in its detach notification, when the system has already ended the workers in
    // the middle of whatever they did, so that waking or joining them there would wait for ever.
    // The system reclaims the pool with the process (see docs/windows.md).
    static WorkerPool* const pool = new WorkerPool(HardwareThreadCount());
    return pool;
#else
    // A function-local static: created on first use, and destroyed (workers joined) at exit or
    // when the library is unloaded, before leak checkers look at the heap.
    static WorkerPool pool(HardwareThreadCount());
    return &pool;
#endif
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
        queued_.fetch_add(copies, std::memory_order_release);
        if (sleepers_ == 0) {
            return;  // every worker is busy or spinning and will find the tasks without a signal
        }
    }
    if (copies == 1) {
        queueChanged_.notify_one();
    } else {
        queueChanged_.notify_all();
    }
}

bool WorkerPool::SpinForWork() const {
    const auto deadline = std::chrono::steady_clock::now() + kSpinBeforeSleep;
    while (queued_.load(std::memory_order_acquire) == 0) {
        if (std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        // Lets a runnable thread (the section's caller, on a machine with few cores) go first.
        std::this_thread::yield();
    }
    return true;
}

void WorkerPool::WorkerMain() {
    for (;;) {
        SpinForWork();
        Task task;
        {
            std::unique_lock<std::mutex> lock(mutex_);
            ++sleepers_;
            queueChanged_.wait(lock, [this] { return stopping_ || !queue_.empty(); });
            --sleepers_;
            if (stopping_) {
                // Queued tasks hold only shared state of sections whose callers never wait for
                // helpers that have not started, so dropping them loses no work.
                queue_.clear();
                return;
            }
            task = std::move(queue_.front());
            queue_.pop_front();
            queued_.fetch_sub(1, std::memory_order_relaxed);
        }
        task();
    }
}

}  // namespace detail
}  // namespace multiproc
}  // namespace tools
