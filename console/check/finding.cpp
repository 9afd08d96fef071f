#include "console/check/finding.h"

#include <tuple>
#include <unordered_set>

#include "spx/support/text_hash.h"

namespace spx::console {
namespace {

auto identityOf(const finding& one) {
  return std::tie(one.check, one.animals, one.values);
}

struct identity_hash {
  std::size_t operator()(const finding* one) const {
    std::size_t sum = static_cast<std::size_t>(one->check);
    for (const std::string& animal : one->animals) {
      sum = sum * 31 + hash(animal);
    }
    for (const auto& [name, text] : one->values) {
      sum = sum * 31 + hash(text);
    }
    return sum;
  }
  qs_lib::text_hash hash;
};

struct same_identity {
  bool operator()(const finding* a, const finding* b) const { return isSameFinding(*a, *b); }
};

}  // namespace

bool isSameFinding(const finding& a, const finding& b) {
  return identityOf(a) == identityOf(b);
}

std::vector<finding> addedFindings(const std::vector<finding>& before, const std::vector<finding>& after) {
  std::unordered_set<const finding*, identity_hash, same_identity> known(before.size());
  for (const finding& one : before) {
    known.insert(&one);
  }
  std::vector<finding> added;
  for (const finding& one : after) {
    if (!known.contains(&one)) {
      added.push_back(one);
    }
  }
  return added;
}

}  // namespace spx::console
