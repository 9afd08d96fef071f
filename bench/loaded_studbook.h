#pragma once

#include <string>

namespace spx::bench {

/// The path of a generated table of so many animals, written at the first call of the process and
/// removed at its end. Exits when it cannot be written.
/// @param kind  "herd", "registry" or "wild", see make_studbook; null for zoos
std::string tableOf(long animals, const char* kind = nullptr);

/// Makes the process-wide objects hold the checked studbook of that table with its pedigree, as the
/// program loads it. Loads only when another size was held before, or after forgetStudbook.
void holdStudbook(long animals, const char* kind = nullptr);

/// The objects were changed: the next holdStudbook loads again.
void forgetStudbook();

/// Puts the index into one and the same random order.
void shuffleIndex();

/// Has the caches hold other things. A person runs an operation once on a studbook, which then lies
/// in the memory, whatever its size; in a loop a small one would never leave the caches.
void coolCaches();

/// While it lives, what the library writes to standard output goes nowhere.
class Quiet {
 public:
  Quiet();
  ~Quiet();
  Quiet(const Quiet&) = delete;
  Quiet& operator=(const Quiet&) = delete;

 private:
  void* output_;
};

}  // namespace spx::bench
