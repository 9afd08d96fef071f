#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "spx/support/export.h"

namespace spx {

/// The list of breeding management programmes. The identifier of a programme is its position from
/// 0.
class SPX_EXPORT BreedingProgram {
 public:
  /// Registers a name; one that exists already keeps its place. @return the programme's identifier
  std::size_t addProgram(const std::string& name);

  /// The identifier of the first programme of exactly that name. An unknown name gives 0, which is
  /// also the identifier of the first programme; kept on purpose. Ask existProgram first. Scans the
  /// list.
  std::size_t getProgramID(const std::string& name) const;

  /// Whether a programme has exactly that name. Scans the list.
  bool existProgram(const std::string& name) const;

  /// Lists the names on standard output and leaves it left-adjusted.
  void listPrograms() const;

  /// The names in the order of registration. The reference holds as long as the list.
  const std::vector<std::string>& programs() const { return programs_; }

 private:
  std::vector<std::string> programs_;
};

/// The programmes of the studbook in use.
extern SPX_EXPORT BreedingProgram Management;

}  // namespace spx
