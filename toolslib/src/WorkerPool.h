#pragma once
// The process-wide pool of worker threads behind RunParallelSection. Internal to ToolsLib.
#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace tools {
namespace multiproc {
namespace detail {

// The number of threads the hardware runs at once; at least 1.
int HardwareThreadCount();

class WorkerPool {
public:
    using Task = std::function<void()>;

    // The pool, started on first use with one worker per hardware thread. Returns null once the
    // pool has been shut down at process exit, so that late callers fall back to running inline.
    static WorkerPool* Instance();

    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    // Number of workers that actually started (may be 0 if the system refused to create threads).
    int GetWorkerCount() const { return static_cast<int>(workers_.size()); }

    // Queues copies of task; each copy runs once on some worker. Tasks must not throw. Tasks still
    // queued when the pool shuts down are dropped without running.
    void Post(const Task& task, int copies);

private:
    explicit WorkerPool(int workerCount);
    ~WorkerPool();
    void WorkerMain();
    // Waits a little for the next task without sleeping; true when one was queued meanwhile.
    bool SpinForWork() const;

    std::mutex mutex_;
    std::condition_variable queueChanged_;
    std::deque<Task> queue_;
    bool stopping_ = false;
    int sleepers_ = 0;            // workers blocked on queueChanged_ (guarded by mutex_)
    std::atomic<int> queued_{0};  // queue_.size(), readable without the lock
    std::vector<std::thread> workers_;
};

}  // namespace detail
}  // namespace multiproc
}  // namespace tools
