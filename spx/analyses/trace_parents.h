#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "spx/analyses/analysis.h"
#include "spx/core/master_data.h"
#include "spx/reports/report_writer.h"
#include "spx/support/data_range.h"
#include "spx/support/export.h"

namespace spx {

/// Lists the possible parents of every animal with an unknown or a group parent: the males or females
/// that were alive and of reproductive age, at the animal's birth location. Writes one XML report
/// with an element per traced animal and a summary of counts.
///
///     TraceParents analysis;
///     analysis.setReportDirectory(path);
///     if (analysis.initialize()) analysis.trace();
///
/// The ID of an unknown parent begins with "UNK"; isMultiParent() recognises a group. Pseudo
/// individuals are neither traced nor candidates. With the default life history no animal is of
/// reproductive age.
class SPX_EXPORT TraceParents : public Analysis {
 public:
  TraceParents();
  ~TraceParents() override;

  /// Sorts the index by birth, collects the candidates and resets the counts. n log n.
  /// Requires: the records do not change before trace().
  /// @return false after "No animals in list" for an empty store
  bool initialize() override;

  /// Writes the report: file stem, "-" and the sex of the view as its name, in the report
  /// directory. Leaves the index sorted by studbook ID, and the pedigree rebuilt if there was one.
  /// Always true: if the report cannot be written, everything is still counted; see
  /// isReportWritten(). Costs a binary search per traced animal, and a line of text per candidate.
  /// Requires: initialize() returned true.
  bool trace();

  /// How many candidates trace() would write. Costs the same searches, and writes nothing.
  /// Requires: initialize() returned true.
  std::uint64_t countCandidates();

  /// Writes at most `most` candidates of each sex for an animal, the oldest first; the element SIRES_OMITTED or
  /// DAMS_OMITTED gives the number of the others. 0, the default, writes all.
  void setMostCandidates(std::uint64_t most) { most_candidates_ = most; }

  /// Whether the report of the last trace() was written completely.
  bool isReportWritten() const { return report_written_; }

  /// Writes the possible sires of an animal into the open report. A sire was alive at conception,
  /// 1.0625 gestation lengths before the birth, in whole days; his age is that at the birth.
  /// @param same_location  only animals that were at the animal's birth location then
  /// @return the number written
  std::uint64_t trackSire(const master_data& animal, bool same_location);

  /// The same for dams, which must be alive on the day of birth.
  std::uint64_t trackDam(const master_data& animal, bool same_location);

  /// The records that trace() lists for an animal as its possible sires (MALE) or dams (FEMALE), in birth order: those
  /// of a group were at its birth location; of an unknown parent those that were, or else those of any location.
  /// Empty for a known parent and for pseudo individuals. Needs initialize(), after which the records may not change.
  std::vector<position> possibleParents(const master_data& animal, SEX sex) const;

  /// Writes the counts as the element SUMMARY.
  void writeUnknownCount();

  // Counts of the last trace().
  std::uint64_t sire_only = 0;     ///< animals whose sire alone is unknown
  std::uint64_t dam_only = 0;      ///< animals whose dam alone is unknown
  std::uint64_t both_parents = 0;  ///< animals with both parents unknown
  std::uint64_t multi_sire = 0;    ///< animals whose sire is a group
  std::uint64_t multi_dam = 0;     ///< animals whose dam is a group

 private:
  /// The candidates of one sex in birth order: all of them, and by location those that were ever there.
  struct candidate_list {
    std::vector<position> all;
    std::unordered_map<packed_deme, std::vector<position>> at_location;
    void clear();
    void add(position record);
    const std::vector<position>& listFor(packed_deme location, bool same_location) const;
  };
  /// The conditions that a candidate must meet.
  struct parent_question {
    const char* element;
    const char* omitted;  ///< element for the number beyond the limit
    const candidate_list& candidates;
    double day;  ///< on which the candidate must be alive; NaN admits none
    qs_lib::DataRange<double> age_days;
  };

  /// A record that could be the parent.
  struct candidate {
    position record;
    double age_days;       ///< at the birth of the offspring
    packed_deme location;  ///< on the day asked about
  };

  parent_question sireQuestion(const master_data& animal) const;
  parent_question damQuestion(const master_data& animal) const;
  static std::vector<candidate> findCandidates(const master_data& animal, const parent_question& question,
                                               bool same_location);
  std::uint64_t writeCandidates(const master_data& animal, const parent_question& question, bool same_location);
  void writeCandidate(const char* element, const candidate& found);
  void traceAnimal(const master_data& animal);
  void openAnimal(const master_data& animal);
  void gatherCandidates();

  ReportWriter report_writer_;
  candidate_list sires_;
  candidate_list dams_;
  bool report_written_ = false;
  bool only_counts_ = false;  ///< candidates are counted, and nothing is written
  std::uint64_t candidates_ = 0;
  std::uint64_t most_candidates_ = 0;
};

}  // namespace spx
