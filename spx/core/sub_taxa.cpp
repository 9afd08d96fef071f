#include "spx/core/sub_taxa.h"

#include "spx/core/errors.h"
#include "spx/support/console.h"

namespace spx {

SubTaxa::SubTaxa() {
  names_.insert(GENERIC_TAXON);
}

taxon_handle SubTaxa::add(const std::string& name) {
  return names_.insert(name).first;
}

taxon_handle SubTaxa::find(const std::string& name) const {
  return names_.find(name);
}

taxon_handle SubTaxa::getGeneric() const {
  return names_.find(GENERIC_TAXON);
}

const std::string& SubTaxa::getName(taxon_handle taxon) const {
  if (names_.empty() || taxon == taxon_handle() || taxon == names_.end()) {
    static const std::string NO_NAME;
    return NO_NAME;
  }
  return *taxon;
}

bool SubTaxa::listTaxa() const {
  if (names_.empty()) {
    spxError("No taxa have been defined");
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
