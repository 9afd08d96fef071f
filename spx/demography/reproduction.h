#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <vector>

#include "spx/core/animal_data.h"
#include "spx/demography/census.h"
#include "spx/demography/presence.h"
#include "spx/demography/statistics.h"
#include "spx/support/basic_stat.h"
#include "spx/support/data_range.h"
#include "spx/support/export.h"
#include "spx/views/data_filter.h"

/// Who breeds, when, and how much.
namespace spx {

/// The breeding of one sex. Ages are in days.
struct parent_summary {
  qs_lib::basic_stat first;      ///< age at the first birth, of parents whose first birth is in the view
  qs_lib::basic_stat last;       ///< age at the last birth, of parents that are dead or gone
  qs_lib::basic_stat all;        ///< age at every birth in the view
  std::size_t unknown_ages = 0;  ///< births in the view whose parent is not known, or its age
  double adult_age = 0;          ///< youngest age at reproduction, NaN when none is known
  std::size_t adults = 0;        ///< animals of the view of at least that age that are there on `date`
  std::size_t breeders = 0;      ///< those of them with offspring by then
  qs_lib::basic_stat lifetime;   ///< offspring in a lifetime, of dead animals that reached that age
};

/// The reproduction of a view.
struct reproduction_summary {
  qs_lib::day_number date = 0;                      ///< the day on which adults are counted
  sex_counts births;                                ///< births in the view by sex
  double male_share = 0;                            ///< among those of known sex; NaN for none
  qs_lib::DataRange<double> male_share_interval{};  ///< Wilson's
  parent_summary females;
  parent_summary males;
  std::map<std::size_t, std::size_t> litter_sizes;  ///< numbers of litters by size
  qs_lib::basic_stat litters;                       ///< their size
  qs_lib::basic_stat intervals;                     ///< days from one litter of a dam to her next
  std::size_t dams_unknown = 0;                     ///< births without a known dam: in no litter
  std::size_t days_unknown = 0;                     ///< births not known to the week: in no litter
  std::array<std::size_t, 12> months{};             ///< births by month, January first
  std::size_t months_unknown = 0;                   ///< births not known to the month
  double mean_day = 0;                              ///< mean day of the year, 1 to 365.25, on the circle; NaN for none
  double concentration = 0;  ///< 1: all on that day; 0: spread over the year (length of the mean vector)
  std::size_t in_view = 0;   ///< animals of the view, of any sex
  left_out_counts left_out;  ///< those whose birth is not counted, by reason
  life_findings findings;    ///< contradictions in their events
};

/// What reproductionOf() needs besides the view.
struct reproduction_settings {
  double litter_days = 0;            ///< births of a dam within this many days are one litter
  double youngest_dam = NOT_KNOWN;   ///< age in days; NaN: the youngest that is recorded
  double youngest_sire = NOT_KNOWN;  ///< likewise
};

/// The settings of the life history of the species in use (LifeHistory); litter_days is 7 when it
/// gives no range of birth dates.
SPX_EXPORT reproduction_settings reproductionSettings();

/// Summarises the births of a view: those of its animals (of any sex) that were born in its
/// locations and period. Parents count wherever they are, at their ages where these are known to
/// within a class width; a mean day is that of the directions on the circle of the year (Batschelet
/// 1981). Adults are counted on the monitor date, at the latest
/// at the end of the period. Linear but for sorting the births.
SPX_EXPORT reproduction_summary reproductionOf(const AnimalData& store, const DataFilter& view,
                                               const presence_settings& presence,
                                               const reproduction_settings& settings);

}  // namespace spx
