#pragma once

#include <string>

namespace spx::bench {

/// The path of a generated table of that many animals, written at the first call in the process and
/// removed at its end. Exits when it cannot be written.
/// @param kind  "herd", "registry" or "wild", see make_studbook; null for zoos
std::string tableOf(long animals, const char* kind = nullptr);

/// Loads the studbook of that table into the process-wide objects, checked and with its pedigree, the way the program
/// does. Does nothing when it is already loaded and unchanged; see forgetStudbook().
void holdStudbook(long animals, const char* kind = nullptr);

/// Declares that the objects were changed, so that the next holdStudbook() loads again.
void forgetStudbook();

/// Shuffles the index, always into the same order.
void shuffleIndex();

/// Evicts the studbook from the processor caches. A person runs an operation once, on a studbook in
/// main memory; repeated in a loop, a small one would never leave the caches.
void coolCaches();

/// While it lives, what the library writes to standard output is discarded.
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
