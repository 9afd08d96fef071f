#include "spx/core/breeding_program.h"

#include <algorithm>
#include <iostream>

#include "spx/support/text.h"

namespace spx {

std::size_t BreedingProgram::addProgram(const std::string& name) {
  if (!existProgram(name)) {
    programs_.push_back(name);
  }
  return getProgramID(name);
}

std::size_t BreedingProgram::getProgramID(const std::string& name) const {
  const auto found = std::find(programs_.begin(), programs_.end(), name);
  return found == programs_.end() ? 0 : static_cast<std::size_t>(found - programs_.begin());
}

bool BreedingProgram::existProgram(const std::string& name) const {
  return std::find(programs_.begin(), programs_.end(), name) != programs_.end();
}

void BreedingProgram::listPrograms() const {
  const std::string rule = qs_lib::replicateChar('=', 70);
  std::cout << std::left << rule << "\nBreeding management programmes\n" << rule << "\n\n";
  for (const std::string& name : programs_) {
    std::cout << name << "\n";
  }
  std::cout << std::endl;
}

}  // namespace spx
