#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "spx/core/enumerations.h"
#include "spx/core/inconsistency.h"
#include "spx/core/master_data.h"
#include "spx/core/missing_parent.h"
#include "spx/support/export.h"
#include "spx/support/julian_date.h"
#include "spx/support/text.h"

namespace spx {

class RecordIndex;

/// The studbook in memory: the records, an index that can be ordered, a lookup by studbook ID and
/// the pedigree.
///
/// Index, lookup and pedigree hold positions into the records. A position stays valid when records
/// are added, a reference into a record does not. Index, lookup and pedigree do not follow later
/// changes of `records`: rebuild them after adding records, and clear them when records are removed.
/// While one of them holds a position beyond the end of `records`, the calls that use it, those of
/// listings and exports included, have undefined behaviour.
///
/// Call order: initialize, addMaster for each animal, validate, createIndex, createLookup,
/// assignIdKeys, populationPedigree, flagBreeders.
///
/// Members that return false have reported the reason with spxError and changed nothing, unless
/// their comment says otherwise; for an empty store they report "No animals in list".
class SPX_EXPORT AnimalData {
 public:
  // Storing

  /// Reserves memory for that many animals and the five pseudo parents, and adds the pseudo parents.
  /// @return false after "Cannot reserve room for animals" when that much memory cannot be reserved
  bool initialize(std::size_t expected);

  /// Appends a record. The index then counts as unordered; nothing else is updated.
  bool addMaster(master_data animal);

  /// Removes the records, and everything that holds positions into them; the reserved memory is kept.
  bool clearList();

  /// Empties the store; the reserved memory is kept.
  bool clearStudbook();

  /// Prints on standard output the number of records that are allocated, used and possible. Always
  /// true.
  bool info() const;

  // Ordering and searching

  /// Enters all records in store order and sorts them. The recorded order is not reset: with the
  /// field of the last sort the new index stays in store order. Call resetOrder first to rebuild an
  /// index.
  bool createIndex(SORT_FIELD field);

  /// Orders the index, stably; n log n. Nothing is done when the index is in that order already.
  ///
  /// BIRTH and DEATH sort by date: unknown births, and living animals, come first. STUDBOOK_ID sorts
  /// byte by byte ("10" before "9"). Kept on purpose, stored settings hold the numbers: SIRE_ID (4)
  /// sorts by key as a signed number, DAM_ID (5) by sire and EVENT (6) by dam, each one step off its
  /// name; LOCATION (7) orders nothing and is not recorded, UNKNOWN_ORDER (8) orders nothing but is
  /// recorded.
  /// @return false after "No index created" for an empty index; false without a message for
  ///         NO_ORDER, unless it is recorded, and for values above 8
  bool sortList(SORT_FIELD field);

  /// Forgets the recorded order of the index, so that the next sort is done in any case.
  void resetOrder();

  /// Enters the ID of every record. Of several records with the same ID the last one is found.
  /// n log n.
  bool createLookup();

  /// The first record with exactly that ID; records.size() when there is none, and nothing is
  /// reported. Linear: repeated searches go through the lookup.
  position findMaster(const std::string& stud_id) const;

  /// Whether a record has exactly that ID. Linear.
  bool animalExists(const std::string& stud_id) const;

  /// Numbers the records from 0 in birth order, and leaves the index in that order.
  bool assignIdKeys();

  /// Sets the `selected` flag of every record. Always true.
  bool selection(bool selected);

  /// Sets the `print` flag of every record. Always true.
  bool print(bool print);

  // Parents

  /// Adds "WILD", "UNK", "UNKM", "UNKF" and "MULT". Always true.
  bool addPseudoParents();

  /// Adds a pseudo individual: unknown origin and rearing, an accurate birth, inbreeding 0, no
  /// generation numbers. Its parents follow from its identifier: those of "WILD..." are "WILD", with
  /// generation -1; those of "UNK..." are "WILD"; all others have "UNKM" and "UNKF". Scans the store.
  /// @return false, without a message, when the ID exists
  bool addPseudoAnimal(const std::string& id, SEX sex, qs_lib::day_number birth_day);

  /// Adds a pseudo individual born in 1802, which stands for a parent without a record. Scans the
  /// store.
  /// @return false, without a message, when the ID exists
  bool addPseudoFounder(const std::string& id, SEX sex);

  /// Gives the wild mate of a known parent an identity. When exactly one parent is "WILD" it
  /// becomes "P" and the other parent's trimmed ID, and a pseudo founder of that ID is added, one
  /// for all their offspring. For the loader of a host, best before addMaster. Scans the store.
  /// Requires: the other parent is a real animal. The mate of "UNK" would become "PUNK", one animal
  /// for all of them.
  /// @return whether the record was changed; nothing is reported
  bool checkPseudoFounder(master_data& animal);

  /// Gives the wild mates of known parents identities: does for every record what checkPseudoFounder
  /// does for one, unless the other parent is a pseudo individual, whose offspring would all share
  /// one wild parent. The founders are appended in the order of their first offspring; a record of
  /// that ID stands in for one. One pass, expected constant time per record.
  /// @return how many founders were added
  std::size_t nameWildMates();

  /// The record of a parent: the first one with that ID. A missing parent becomes a pseudo founder:
  /// "UNKM", "UNKF" or "UNK" by sex for IDs that begin with "UNK", else "P" and the whole ID, so the
  /// empty ID becomes "P". It is added unless it exists. The console shows "Warning: record of parent
  /// id # ... does not exist, assume ..." every time, even if the founder already exists. Scans the
  /// store. References into records may be invalid afterwards.
  position findParent(const std::string& id, SEX sex);

  /// Resolves the parents of every record and checks them: duplicate IDs, the sex of parents,
  /// parents born on the birth day of their offspring or later. "UNK" parents become "UNKM" and
  /// "UNKF"; with several taxa, generic animals inherit the taxon that their parents share. Pseudo
  /// individuals are not checked and become generic.
  ///
  /// Parents without a record go to `missing_parents`, other findings to `inconsistencies` and, one per
  /// line, into "~/spx/projects/studbook-errors.txt", which is replaced. When that file cannot be
  /// written "Cannot write studbook error file" is reported once. Findings never make it fail. Linear.
  /// @return false for an empty store
  bool validate();

  // Pedigree

  /// Builds the pedigree list in studbook-ID order from the index, which is made if it is empty.
  /// Parents without a record become pseudo founders as in findParent; these have no entry.
  /// Always true; an empty store is reported ("No animals in list", "No index created").
  bool populationPedigree();

  /// Orders the pedigree list, stably, after building it if it is empty. BIRTH (1) by birth date,
  /// parents before offspring where the dates are equal; 4 by key as a signed number; 5 and 6 by
  /// one text, the sire's or dam's ID followed by the animal's birth date, so that IDs of different
  /// lengths mix with the dates. The numbers are those of sortList, one step off the names; kept on
  /// purpose.
  /// @return false, with the order unchanged, for every other field except the recorded one, which
  ///         is NO_ORDER after building
  bool sortPedigree(SORT_FIELD field);

  /// Sets `breeder` on every record that the pedigree names as a parent, pseudo parents included,
  /// and clears it on all others. Builds the pedigree if it is empty.
  bool flagBreeders();

  /// Selects an animal and its ancestors, and nothing else; leaves the pedigree in birth order. One pass from the
  /// youngest to the oldest, in which an animal without a birth date (0) counts as the oldest. So the ancestors of a
  /// parent are missed when the records make it younger than its offspring, when the offspring has no birth date, and
  /// when it is its own descendant. Kept on purpose; selectAncestors finds them all. Builds the pedigree if it is
  /// empty. Reports "Animal does not exist" for an unknown ID. A pseudo founder that building the pedigree has added
  /// has no entry: nothing is selected.
  bool individualPedigree(const std::string& id);

  /// Selects an animal and all its ancestors, and nothing else, by the parents alone: dates play no
  /// part, and a cycle ends where it closes. The pedigree keeps its order, and is built if it is
  /// empty. Reports "Animal does not exist" for an unknown ID. Linear in the number of records.
  bool selectAncestors(const std::string& id);

  /// Selects the records that name an animal as a parent, and nothing else; linear.
  /// @return how many there are
  std::size_t selectOffspring(const std::string& id);

  /// Checks the number of founder lineages: false without a message for 0 and above 255. The stored
  /// lineages are not changed: setFounderLineage sets them one by one.
  bool initializeLineages(std::uint64_t lineages);

  /// The order of the index that is recorded; see sortList().
  SORT_FIELD sortField() const { return sort_field_; }
  /// The order of the pedigree list that is recorded; see sortPedigree().
  SORT_FIELD pedigreeSortField() const { return pedigree_sort_field_; }

  /// True until flagBreeders has run; true again after clearStudbook.
  bool breedersStale() const { return breeders_stale_; }

  std::vector<master_data> records;                                      ///< in the order in which they were added
  std::vector<position> index;                                           ///< the order of listings and analyses
  std::vector<pedigree_record> pedigree;                                 ///< made by populationPedigree
  std::map<std::string, position, qs_lib::map_key<std::string>> lookup;  ///< made by createLookup
  std::string text;                                                      ///< the host's; emptied by clearStudbook
  bool records_changed = true;                  ///< for the host; set by addMaster and clearStudbook
  bool derived_changed = true;                  ///< for the host; set likewise
  std::vector<inconsistency> inconsistencies;   ///< the findings of the last validate
  std::vector<missing_parent> missing_parents;  ///< those found by the last validate, in the order of their first use

 private:
  template <class Order>
  void sortIndex();
  void sortPedigreeBy(const std::vector<std::uint64_t>& numbers_of_records);
  void sortPedigreeByBirth();
  void sortPedigreeByParent(position pedigree_record::*parent);
  void orderEqualBirths(const std::vector<std::uint64_t>& days);
  void fetchParents(const RecordIndex& known, std::size_t entry) const;
  bool preparePedigreeOf(const std::string& id);

  void appendPseudo(const std::string& id, SEX sex, qs_lib::day_number birth_day);
  position parentOf(position record, SEX sex, RecordIndex& known);
  position assumeParent(const std::string& missing, SEX sex, RecordIndex* known);
  struct Validation;
  void validateRecord(position record, Validation& pass);
  taxon_handle validateParent(position record, SEX sex, Validation& pass);
  void noteMissing(position record, SEX sex, position stand_in, Validation& pass);
  void setTaxon(position record, taxon_handle taxon, Validation& pass);
  void writeInconsistencies() const;

  SORT_FIELD sort_field_ = SORT_FIELD::STUDBOOK_ID;
  SORT_FIELD pedigree_sort_field_ = SORT_FIELD::NO_ORDER;
  bool breeders_stale_ = true;
};

/// Sets `breeder` on the records of the sire and the dam in Animals; the animal's own flag is not
/// touched. Positions beyond the records are ignored.
SPX_EXPORT void flagParents(const pedigree_record& entry);

/// The studbook in use.
extern SPX_EXPORT AnimalData Animals;

}  // namespace spx
