#include "spx/support/progress_bar.h"

#include <iostream>

#include "spx/support/console.h"
#include "spx/support/number_text.h"

namespace qs_lib {
namespace {
constexpr char SCALE[] = "0%   10   20   30   40   50   60   70   80   90   100%\n";
constexpr char RULER[] = "|----|----|----|----|----|----|----|----|----|----|";
constexpr std::uint16_t MARK_STEP = 2;  // percent
}  // namespace

ProgressBar::ProgressBar(std::uint64_t total, const std::string& title) : total_(total), title_(title) {
  display();
  timer_.restart();
}

void ProgressBar::display() const {
  if (!isVerbose()) {
    return;
  }
  if (!title_.empty()) {
    std::cout << '[' << title_ << "]\n";
  }
  std::cout << SCALE << RULER << std::endl;
}

bool ProgressBar::progress() {
  if (complete_) {
    return false;
  }
  ++done_;
  const double percentage = static_cast<double>(done_) / static_cast<double>(total_) * 100;
  // At most one mark per step, even when several are due: a short bar shows one mark per step.
  if (percentage >= next_) {
    if (isVerbose()) {
      std::cout << '*' << std::flush;
    }
    next_ = static_cast<std::uint16_t>(next_ + MARK_STEP);
  }
  if (done_ == total_) {
    finished();
  }
  return true;
}

void ProgressBar::finished() {
  if (!complete_) {
    timer_.stop();
    if (isVerbose()) {
      std::cout << "\nTime used : " << defaultReal(timer_.seconds()) << " seconds\n";
    }
  }
  complete_ = true;
}

void ProgressBar::end() {
  if (!complete_) {
    timer_.stop();
  }
  std::cout << std::endl;
}
}  // namespace qs_lib
