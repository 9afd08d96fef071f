// Identifiers of pseudo individuals: the regular expressions and the matcher for long identifiers
// accept the same identifiers, and appending allowed characters does not change the kind.
#include "spx/core/identifier_matcher.h"
#include "spx/core/master_data.h"
#include "spx/views/predicates.h"

#include "fuzz/fuzz_support.h"

namespace spx::fuzz {
namespace {

struct identifier_question {
  bool (*asks)(const std::string& id);
  IDENTIFIER_KIND kind;
  const char* longer;  ///< what may be appended to an identifier of the kind any number of times
};

constexpr identifier_question QUESTIONS[] = {
    {isPseudoIndividual, IDENTIFIER_KIND::PSEUDO_ANIMAL, "x\xFF "},
    {isMultiParent, IDENTIFIER_KIND::MULTI_PARENT, "x\xFF "},
    {isSameLitterParent, IDENTIFIER_KIND::SAME_LITTER, "047"},
    {isPseudoFounder, IDENTIFIER_KIND::PSEUDO_FOUNDER, "047"},
};

std::string prolonged(std::string id, const std::string& more) {
  do {
    id += more;
  } while (id.size() <= 300);
  return id;
}

void tryIdentifier(const std::string& id) {
  for (const auto& [asks, kind, longer] : QUESTIONS) {
    const bool is_kind = asks(id);
    require(is_kind == matchesIdentifier(id, kind), "the matcher knows another language");
    require(!is_kind || canBeginIdentifier(id, kind), "a first letter that cannot begin");
    require(!is_kind || asks(prolonged(id, longer)), "a longer identifier is of no kind");
    require(!asks(prolonged(id, "\n")), "an identifier that ends in line breaks");
  }
  require(!isSameLitterParent(id) || isPseudoIndividual(id) || id.find_first_of("\n\r") != id.npos,
          "a litter of real animals");
  require(!isPseudoFounder(id) || isSameLitterParent(id), "a pseudo founder that is not a same-litter parent");
}

}  // namespace
}  // namespace spx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  for (const std::string& line : spx::fuzz::linesOf(spx::fuzz::asText(data, size))) {
    spx::fuzz::tryIdentifier(line);
  }
  return 0;
}
