#pragma once

#include <functional>
#include <set>
#include <string>

#include "spx/support/export.h"

namespace spx {

/// The name of the taxon of animals whose taxon is not given.
inline constexpr char GENERIC_TAXON[] = "generic";

/// A taxon as records and views hold it: an entry of the registry, so that taxa are compared by
/// identity. It stays valid while names are added. A default-made handle is no taxon.
using taxon_handle = std::set<std::string>::const_iterator;

/// The registry of taxon names, for example sub-species, in byte-wise order. Each name occurs once.
class SPX_EXPORT SubTaxa {
 public:
  /// A registry that holds "generic".
  SubTaxa();

  /// Registers a name. @return its handle, that of the existing entry for a known name.
  /// Logarithmic.
  taxon_handle add(const std::string& name);

  /// The handle of a name; end() when it is not registered. Logarithmic.
  taxon_handle find(const std::string& name) const;

  /// The handle of "generic"; end() after clear().
  taxon_handle getGeneric() const;

  /// The name behind a handle of this registry; empty for end(), for a default-made handle and
  /// while the registry is empty. Valid as long as the handle.
  const std::string& getName(taxon_handle taxon) const;

  /// Lists the names with their running numbers from 0.
  /// @return false after reporting "No taxa have been defined" when the registry is empty
  bool listTaxa() const;

  /// Removes every name, "generic" included. All handles become invalid: clear the records and the
  /// taxa of every view first. A registry that is assigned another loses its handles likewise.
  void clear();

  /// The handle of no taxon.
  taxon_handle end() const { return names_.end(); }
  /// All names in byte-wise order; valid as long as the registry.
  const std::set<std::string>& names() const { return names_; }

 private:
  std::set<std::string> names_;
};

/// The taxa of the studbook in use.
extern SPX_EXPORT SubTaxa Subspecies;

}  // namespace spx
