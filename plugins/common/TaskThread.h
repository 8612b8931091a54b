// TaskThread: a thread of its own that runs the tasks given to it one after the other.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace velmora::plugin {

// Tasks run in the order they were posted, never two at once. Post is safe from any thread;
// Flush and Finish must not be called from a task.
class TaskThread {
  public:
    TaskThread();
    // Finishes.
    ~TaskThread();
    TaskThread(const TaskThread&) = delete;
    TaskThread& operator=(const TaskThread&) = delete;

    // Queues a task. After Finish tasks are dropped.
    void Post(std::function<void()> task);
    // Waits until every task posted before the call has run.
    void Flush();
    // Runs the tasks already posted, then ends the thread and waits for it.
    void Finish();

  private:
    void Run();

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> tasks_;
    bool finishing_ = false;
    std::thread thread_;
};

}  // namespace velmora::plugin
