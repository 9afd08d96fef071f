#pragma once

#include <iostream>
#include <streambuf>

namespace spx::console {

/// While it lives, standard error shows nothing: for a studbook that is loaded only to be compared.
class Silence {
 public:
  Silence() : errors_(std::cerr.rdbuf(nullptr)) {}
  ~Silence() { std::cerr.rdbuf(errors_); }  // clears the state
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;

 private:
  std::streambuf* errors_;
};

}  // namespace spx::console
