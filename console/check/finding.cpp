#include "console/check/finding.h"

#include <algorithm>
#include <tuple>

namespace spx::console {
namespace {

auto identityOf(const finding& one) {
  return std::tie(one.check, one.animals, one.values);
}

bool isBefore(const finding* a, const finding* b) {
  return identityOf(*a) < identityOf(*b);
}

}  // namespace

bool isSameFinding(const finding& a, const finding& b) {
  return identityOf(a) == identityOf(b);
}

std::vector<finding> addedFindings(const std::vector<finding>& before, const std::vector<finding>& after) {
  std::vector<const finding*> known;
  known.reserve(before.size());
  for (const finding& one : before) {
    known.push_back(&one);
  }
  std::sort(known.begin(), known.end(), isBefore);
  std::vector<finding> added;
  for (const finding& one : after) {
    if (!std::binary_search(known.begin(), known.end(), &one, isBefore)) {
      added.push_back(one);
    }
  }
  return added;
}

}  // namespace spx::console
