#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "spx/core/animal_data.h"
#include "spx/demography/presence.h"
#include "spx/demography/statistics.h"
#include "spx/demography/survival.h"
#include "spx/support/export.h"
#include "spx/views/data_filter.h"

/// Life tables: what happened in each class of age, and what follows from it.
namespace spx {

/// Classes of age in days.
struct age_classes {
  std::vector<double> starts;  ///< ascending from 0; each class ends where the next one starts
  double open_width = 0;       ///< the last class has no end, and counts as so wide
  /// The end of a class, infinite for the last one.
  SPX_EXPORT double end(std::size_t at) const;
  /// The width of a class in days.
  SPX_EXPORT double width(std::size_t at) const;
  /// The class that holds an age.
  SPX_EXPORT std::size_t of(double age) const;
};

/// Classes of the width and number that a view sets.
SPX_EXPORT age_classes ageClasses(const DataFilter& view);

/// What happened to the animals of one sex in one class of age. Animals of unknown sex, and
/// offspring of unknown sex, count with their shares.
struct class_tally {
  double at_risk = 0;    ///< animals at risk of dying in the class, see lifeTallies
  double exposure = 0;   ///< days that animals lived in the class while watched
  double deaths = 0;     ///< deaths in the class
  double daughters = 0;  ///< offspring born to parents of that sex and age
  double sons = 0;       ///< likewise
  double offspring = 0;  ///< likewise, of any sex

  SPX_EXPORT class_tally& operator+=(const class_tally& other);
};

/// The tallies of a view.
struct life_tallies {
  age_classes classes;
  std::size_t samples = 1;           ///< random samples into which the animals were divided
  std::vector<class_tally> tallies;  ///< by sample, sex (females first) and class
  std::size_t in_view = 0;           ///< animals of the view: counted and left out
  std::size_t counted = 0;           ///< animals that are in the tallies
  left_out_counts left_out;          ///< the others, by reason
  life_findings findings;            ///< contradictions in their events
  std::size_t placed_births = 0;     ///< births counted for a dam, a sire, or both
  std::size_t unplaced_births = 0;   ///< births of which neither parent was watched at a known age
  double male_share = 0.5;           ///< at birth, among those of known sex
  double unknown_male_share = 0.5;   ///< what animals of unknown sex count as; NaN: left out

  /// The classes of one sample and sex.
  std::span<const class_tally> of(std::size_t sample, SEX sex) const {
    const std::size_t classes_each = classes.starts.size();
    return {tallies.data() + (2 * sample + (sex == SEX::MALE)) * classes_each, classes_each};
  }
};

/// Counts, by sex and class of age, the animals at risk, the time they lived, their deaths and their
/// offspring.
///
/// The animals are watched as for survival curves (survivalData). With prorating an animal is at
/// risk for the part of a class over which it was watched, and for the rest of the class too when it
/// dies in it; without prorating every animal seen in a class counts as one. A death at the very end
/// of a class belongs to it. Unknown sexes are left out, halved or shared in the ratio of the
/// others, as the view's handle_unknown says, for animals and offspring alike. A birth counts for a
/// parent that is watched on that day, at its age then; a sire may have gone since the conception.
/// @param gestation  how many days before a birth the sire may have gone
/// @param samples    number of random samples of equal size into which the animals are divided;
///                   equal seeds give equal samples
SPX_EXPORT life_tallies lifeTallies(const AnimalData& store, const DataFilter& view, const presence_settings& presence,
                                    const age_classes& classes, double gestation, std::size_t samples = 1,
                                    std::uint32_t seed = 1);

/// All animals in one sample.
SPX_EXPORT life_tallies joinSamples(life_tallies data);

/// One class of a life table. Ages and times are in days.
struct life_table_row {
  double age = 0;                                   ///< at the start of the class
  double width = 0;                                 ///< of the class
  double at_risk = 0;                               ///< animals at risk
  double exposure = 0;                              ///< days lived
  double deaths = 0;                                ///< deaths
  double q = NOT_KNOWN;                             ///< chance to die in the class; NaN where no animal was at risk
  double q_lower = NOT_KNOWN, q_upper = NOT_KNOWN;  ///< its interval (Wilson)
  double p = 1;                                     ///< chance to live through it
  double l = 1;                                     ///< share that reaches it
  double l_lower = NOT_KNOWN, l_upper = NOT_KNOWN;  ///< its interval (Greenwood, log-log); NaN for l of 1 and 0
  double L = 0;                                     ///< days lived in it per newborn
  double T = 0;                                     ///< days lived in it and after it per newborn
  double e = 0;                                     ///< days that an animal at its start can expect to live
  double births = 0;                                ///< offspring that count: see lifeTable
  double m = 0;                                     ///< offspring per animal and class width
};

/// The life table of one sex (Caughley 1977; Caswell 2001): q = deaths / at risk, p = 1 - q, l the
/// product of p, L the width times the mean of l and the next l, T the sum of L from the class on,
/// e = T / l, m = births / days lived x width.
///
/// The table ends with the last class in which an animal was at risk. The class without an end has
/// q = 1 where an animal died in it, and L by the rate of death in it. In a class between others in
/// which no animal was at risk, none is assumed to die. When some live beyond the table, e counts
/// the time in the table only.
/// @param same_sex  offspring of the sex of the parents counts; otherwise half of all
SPX_EXPORT std::vector<life_table_row> lifeTable(std::span<const class_tally> tallies, const age_classes& classes,
                                                 SEX sex, bool same_sex);

/// The table of both sexes together: daughters of females and sons of males, or half of all.
SPX_EXPORT std::vector<life_table_row> lifeTableOfAll(const life_tallies& data, bool same_sex);

}  // namespace spx
