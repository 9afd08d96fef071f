#include "spx/core/sub_taxa.h"

#include "spx/core/error_texts.h"
#include "spx/core/errors.h"
#include "spx/support/console.h"

namespace spx {

SubTaxa::SubTaxa() {
  names_.insert(GENERIC_TAXON);
}

taxon_handle SubTaxa::add(const std::string& name) {
  return taxon_handle(*names_.insert(name).first);
}

taxon_handle SubTaxa::find(const std::string& name) const {
  const auto found = names_.find(name);
  return found == names_.end() ? end() : taxon_handle(*found);
}

taxon_handle SubTaxa::getGeneric() const {
  return find(GENERIC_TAXON);
}

const std::string& SubTaxa::getName(taxon_handle taxon) const {
  static const std::string NO_NAME;
  return names_.empty() || taxon == end() ? NO_NAME : *taxon;
}

bool SubTaxa::listTaxa() const {
  if (names_.empty()) {
    spxError(error_text::NO_TAXA);
    return false;
  }
  std::string text = "Taxa defined:\n";
  int number = 0;
  for (const std::string& name : names_) {
    text += "\t[" + std::to_string(number++) + "] " + name + "\n";
  }
  qs_lib::display(text + "\n");
  return true;
}

void SubTaxa::clear() {
  names_.clear();
}

}  // namespace spx
