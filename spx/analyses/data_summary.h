#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "spx/core/enumerations.h"
#include "spx/core/master_data.h"
#include "spx/support/export.h"
#include "spx/support/text.h"

namespace spx {

/// Counts the studbook and prints a summary in seven sections. Pseudo individuals are not counted.
///
/// The reference date is the end date of the view, or its start date without an end date. An animal
/// that is not living then counts as dead or disappeared, also when it was born later.
///
///     DataSummary summary;
///     if (summary.initialize() && summary.analyse()) summary.reportConsole();
class SPX_EXPORT DataSummary {
 public:
  /// Records by sex.
  using sex_counts = std::map<SEX, std::int64_t, qs_lib::map_key<SEX>>;
  /// Records by the accuracy of a date.
  using accuracy_counts = std::map<DATE_ACCURACY, std::int64_t, qs_lib::map_key<DATE_ACCURACY>>;

  /// All counts 0, for the five sexes and seven accuracies too.
  DataSummary();
  virtual ~DataSummary();

  /// Updates the breeder flags when the store says that they are stale. This builds the pedigree if
  /// it is empty, with the warnings of AnimalData::populationPedigree(), and may add pseudo founders
  /// to the store. Linear.
  /// @return false after reporting "No animals in list" for an empty store
  bool initialize();

  /// Counts the records; always true. Linear. A second call adds to the counts of the first, except
  /// `records`, which is set again: use a new object for each summary.
  bool analyse();

  /// Shows the summary in one call of the console.
  void reportConsole() const;

  std::int64_t records = 0;          ///< without pseudo individuals
  std::int64_t living = 0;           ///< on the reference date
  std::int64_t died = 0;             ///< not living, and not lost to follow-up
  std::int64_t disappeared = 0;      ///< not living, lost to follow-up
  std::int64_t breeders = 0;         ///< records with offspring
  std::int64_t living_breeders = 0;  ///< of the breeders, those living
  /// In days, to the death or the reference date, with the range of the birth date added; 0, with an
  /// empty ID, when no animal is older than that. An animal without a birth date counts from day 0.
  double oldest_age = 0;
  std::string oldest_id;           ///< the first of several of that age
  sex_counts sexes;                ///< of all records
  accuracy_counts birth_accuracy;  ///< of all records
  accuracy_counts death_accuracy;  ///< of the records that are not living and have a death date
  // Parents are unknown when their identifier begins with "UNK", in capitals.
  std::int64_t unknown_sire = 0;        ///< the sire alone
  std::int64_t unknown_dam = 0;         ///< the dam alone
  std::int64_t unknown_both = 0;        ///< sire and dam
  std::int64_t group_sire = 0;          ///< the sire is a group
  std::int64_t group_dam = 0;           ///< the dam is a group
  std::int64_t wild_origin = 0;         ///< founders: two wild parents, bred
  std::int64_t living_wild_origin = 0;  ///< of the founders, those living
  std::int64_t bred_founders = 0;       ///< founders that have bred
  /// Living founders that have not bred. Founders have bred by definition, so this is 0; the line of
  /// the summary is kept on purpose.
  std::int64_t potential_founders = 0;

 private:
  void countFounder(const master_data& animal, bool is_living);
  void countParents(const master_data& animal);
  void countLife(const master_data& animal, qs_lib::day_number reference);
  void compareAge(const master_data& animal, qs_lib::day_number last_day);
};

}  // namespace spx
