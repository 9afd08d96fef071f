#pragma once

#include <set>
#include <string>

#include "spx/support/export.h"

namespace spx {

/// The name of the taxon of animals whose taxon is not given.
inline constexpr char GENERIC_TAXON[] = "generic";

/// A taxon as records and views hold it: a reference to a name of the registry, so that taxa are
/// compared by identity. It stays valid while names are added. A default-constructed handle refers to
/// no taxon and equals SubTaxa::end().
class taxon_handle {
 public:
  taxon_handle() = default;
  /// @param name  in the registry
  explicit taxon_handle(const std::string& name) : name_(&name) {}

  const std::string& operator*() const { return *name_; }  ///< the name; not for end()
  const std::string* operator->() const { return name_; }  ///< likewise
  bool operator==(const taxon_handle&) const = default;    ///< whether both refer to the same taxon

 private:
  const std::string* name_ = nullptr;
};

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

  /// The name behind a handle of this registry; empty for end() and while the registry is empty.
  /// Valid as long as the handle.
  const std::string& getName(taxon_handle taxon) const;

  /// Lists the names with their running numbers from 0.
  /// @return false after reporting "No taxa have been defined" when the registry is empty
  bool listTaxa() const;

  /// Removes every name, "generic" included. All handles become invalid, as they do when the
  /// registry is assigned another one.
  /// Requires: the records and the taxa of every view are cleared.
  void clear();

  /// The handle that refers to no taxon.
  taxon_handle end() const { return {}; }
  /// All names in byte-wise order; valid as long as the registry.
  const std::set<std::string>& names() const { return names_; }

 private:
  std::set<std::string> names_;
};

/// The taxa of the studbook in use.
extern SPX_EXPORT SubTaxa Subspecies;

}  // namespace spx
