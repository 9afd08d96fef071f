#pragma once

#include <vector>

#include "spx/demography/presence.h"
#include "spx/support/export.h"
#include "spx/views/data_filter.h"

/// How old the animals are.
namespace spx {

/// Numbers of animals of one age class by sex; fractions where unknown sexes are shared.
struct age_row {
  double age = 0;      ///< at the start of the class, in days
  double males = 0;    ///< with the share of the animals of unknown sex
  double females = 0;  ///< likewise
  double unknown = 0;  ///< animals of unknown sex that are not shared
  double total() const { return males + females + unknown; }
};

/// The animals that are there on a day, by age and sex.
struct age_structure {
  qs_lib::day_number date = 0;
  double class_width = 0;     ///< in days; the last class has no end
  std::vector<age_row> rows;  ///< from age 0 up to the view's number of classes
  age_row unknown_age;        ///< those whose birth is not known to within a class width
  double shared_unknown = 0;  ///< animals of unknown sex that were shared between the sexes
};

/// The age pyramid of a day. Animals of unknown sex (hermaphrodite and abnormal ones too) stand by
/// themselves, or are shared between the sexes equally or in the ratio of the others, as the view's
/// handle_unknown says. Every animal that is there is in one row or in unknown_age.
SPX_EXPORT age_structure ageStructure(const Presence& presence, const DataFilter& view, qs_lib::day_number date);

/// The share of males among the animals of unknown sex by the view's handle_unknown: NaN when they
/// are to be ignored, one half, or the ratio among the animals whose sex is known (one half where
/// there are none).
SPX_EXPORT double maleShareOfUnknown(HANDLE_UNKNOWN handle, double males, double females);

/// The class of an age: the last one has no end.
SPX_EXPORT std::size_t ageClass(double age, double class_width, std::size_t classes);

}  // namespace spx
