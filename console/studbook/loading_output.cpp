#include "console/studbook/loading_output.h"

#include <iostream>
#include <string>

#include "spx/support/console.h"

namespace spx::console {

LoadingOutput::LoadingOutput(const std::string& what) : verbose_(qs_lib::isVerbose()), progress_(what) {
  std::cout.flush();
  // A stream without a buffer refuses what is written; its state is cleared at the end.
  output_ = std::cout.rdbuf(nullptr);
  qs_lib::setVerbose(false);
  qs_lib::setDisplayHandler([](const std::string&) {});
}

LoadingOutput::~LoadingOutput() {
  qs_lib::setDisplayHandler({});
  qs_lib::setVerbose(verbose_);
  std::cout.rdbuf(output_);  // clears the state
}

}  // namespace spx::console
