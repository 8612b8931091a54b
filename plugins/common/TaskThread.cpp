// TaskThread: a queue of tasks under one lock and the thread that empties it.
#include "plugins/common/TaskThread.h"

namespace velmora::plugin {

TaskThread::TaskThread() : thread_([this] { Run(); }) {}

TaskThread::~TaskThread() {
    Finish();
}

void TaskThread::Post(std::function<void()> task) {
    std::lock_guard<std::mutex> lock(mutex_);
    if (finishing_) return;
    tasks_.push_back(std::move(task));
    changed_.notify_all();
}

void TaskThread::Flush() {
    std::mutex doneMutex;
    std::condition_variable doneChanged;
    bool done = false;
    Post([&] {
        std::lock_guard<std::mutex> lock(doneMutex);
        done = true;
        doneChanged.notify_all();
    });
    std::unique_lock<std::mutex> lock(doneMutex);
    // Nothing runs after Finish: then there is nothing to wait for either.
    doneChanged.wait(lock, [&] {
        std::lock_guard<std::mutex> queue(mutex_);
        return done || (finishing_ && tasks_.empty());
    });
}

void TaskThread::Finish() {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        finishing_ = true;
        changed_.notify_all();
    }
    if (thread_.joinable()) thread_.join();
}

void TaskThread::Run() {
    std::unique_lock<std::mutex> lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return finishing_ || !tasks_.empty(); });
        if (tasks_.empty()) return;
        std::function<void()> task = std::move(tasks_.front());
        tasks_.pop_front();
        lock.unlock();
        task();
        lock.lock();
    }
}

}  // namespace velmora::plugin
