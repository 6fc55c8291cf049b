#pragma once

#include <condition_variable>
#include <cstdint>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace zaf {

/// Processes items in several threads and emits them in their order. `Steps` has
///
/// - `bool Next(Item&)`: gives the items one after another; false after the last one;
/// - `void Work(Item&)`: is called for several items at a time, each in one thread;
/// - `void Emit(Item&)`: is called for each item when it and all before it are done;
/// - `bool Depends(const Item&, const Item& earlier)`: whether an item has to wait for an earlier
/// one.
///
/// Next, Emit and Depends are called by one thread at a time. A slow item delays the others only
/// when a bounded number of them is finished.
template <class Item, class Steps>
class TOrderedWork {
 public:
  /// The calling thread is one of the jobs.
  TOrderedWork(unsigned jobs, Steps& steps)
      : jobs_(jobs), slots_(jobs == 1 ? 1 : jobs * kSlotsPerJob), steps_(steps) {}

  /// Returns when all items are done, or throws what one of the functions threw; items that were
  /// begun are then finished, but not emitted.
  void Run() {
    {
      std::vector<std::jthread> threads;
      try {
        for (unsigned i = 1; i < jobs_; ++i) threads.emplace_back([this] { WorkOn(); });
      } catch (const std::system_error&) {
        // The system allows no more threads; the existing ones do the work.
      }
      WorkOn();
    }
    if (failure_) std::rethrow_exception(failure_);
  }

 private:
  static constexpr std::size_t kSlotsPerJob = 16;

  struct TSlot {
    Item item;
    bool is_done = false;
  };

  TSlot& SlotOf(std::uint64_t number) {
    return slots_[static_cast<std::size_t>(number % slots_.size())];
  }

  void WorkOn() {
    std::unique_lock lock(mutex_);
    try {
      while (WorkOnNext(lock)) {
      }
    } catch (...) {
      if (!lock.owns_lock()) lock.lock();
      failure_ = std::current_exception();
      is_ended_ = true;
    }
    changed_.notify_all();
  }

  bool WorkOnNext(std::unique_lock<std::mutex>& lock) {
    changed_.wait(lock, [&] { return is_ended_ || end_ - begin_ < slots_.size(); });
    if (is_ended_) return false;
    const std::uint64_t number = end_;
    TSlot& slot = SlotOf(number);
    slot.is_done = false;
    if (!steps_.Next(slot.item)) {
      is_ended_ = true;
      return false;
    }
    ++end_;
    changed_.wait(lock, [&] { return failure_ || !HasToWait(number); });
    lock.unlock();
    steps_.Work(slot.item);
    lock.lock();
    slot.is_done = true;
    while (!failure_ && begin_ < end_ && SlotOf(begin_).is_done) steps_.Emit(SlotOf(begin_++).item);
    changed_.notify_all();
    return true;
  }

  bool HasToWait(std::uint64_t number) {
    for (std::uint64_t earlier = begin_; earlier < number; ++earlier)
      if (!SlotOf(earlier).is_done && steps_.Depends(SlotOf(number).item, SlotOf(earlier).item))
        return true;
    return false;
  }

  const unsigned jobs_;
  std::vector<TSlot> slots_;
  Steps& steps_;

  std::mutex mutex_;  ///< Guards the following members and the slots that no thread works on.
  std::condition_variable changed_;
  std::uint64_t begin_ = 0;  ///< The first item that has not been emitted.
  std::uint64_t end_ = 0;    ///< After the last item that was begun.
  bool is_ended_ = false;    ///< No more items may begin.
  std::exception_ptr failure_;
};

}  // namespace zaf
