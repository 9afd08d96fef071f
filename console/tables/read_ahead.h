#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <variant>

namespace spx::console {

/// Produces parts in a second thread, a few ahead of the consumer; in take() itself when no thread
/// can be started. One thread makes all parts: starting one for each would cost more than it saves.
/// @tparam Part  has isLast(), true where no other part follows
template <class Part>
class ReadAhead {
 public:
  /// @param make  called in the other thread, once per part; whatever it uses must outlive this object
  explicit ReadAhead(std::function<Part()> make) : make_(std::move(make)) {
    try {
      thread_ = std::jthread([this](const std::stop_token& stop) { run(stop); });
    } catch (const std::system_error&) {
      thread_ = {};
    }
  }

  /// The next part, not to be called after the last one. Throws what making it threw.
  Part take() {
    if (!thread_.joinable()) {
      return make_();
    }
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return !made_.empty(); });
    made_part part = std::move(made_.front());
    made_.pop_front();
    changed_.notify_all();
    lock.unlock();
    if (auto* failure = std::get_if<std::exception_ptr>(&part)) {
      thread_ = {};  // the thread has ended by itself
      std::rethrow_exception(*failure);
    }
    return std::get<Part>(std::move(part));
  }

 private:
  static constexpr std::size_t MOST_MADE = 4;
  using made_part = std::variant<std::exception_ptr, Part>;

  void run(const std::stop_token& stop) {
    for (bool goes_on = true; goes_on && !stop.stop_requested();) {
      made_part part = makePart();
      const Part* made = std::get_if<Part>(&part);
      goes_on = made != nullptr && !made->isLast();
      std::unique_lock lock(mutex_);
      changed_.wait(lock, stop, [this] { return made_.size() < MOST_MADE; });
      made_.push_back(std::move(part));
      changed_.notify_all();
    }
  }

  made_part makePart() {
    try {
      return make_();
    } catch (...) {
      return std::current_exception();
    }
  }

  std::function<Part()> make_;
  std::mutex mutex_;
  std::condition_variable_any changed_;
  std::deque<made_part> made_;  ///< in their order
  std::jthread thread_;         ///< declared last: joined before the members that it uses are destroyed
};

}  // namespace spx::console
