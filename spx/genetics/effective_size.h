#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "spx/core/enumerations.h"
#include "spx/genetics/genetic_pedigree.h"
#include "spx/genetics/inbreeding.h"
#include "spx/support/export.h"

/// The effective size of a population by several methods, which assume different things and so give
/// different numbers: name the one that is shown.
namespace spx {

/// An effective size, its standard error and interval; NaN where the method gives none or the data
/// are too few. A population whose inbreeding does not increase has an infinite size.
struct effective_size {
  double size;
  double standard_error;
  double low;            ///< of the 95 % interval
  double high;           ///< likewise; infinite where the rate may be 0
  std::size_t used;      ///< animals that the number rests on
  std::size_t left_out;  ///< animals that could not be used
};

/// 4 Nm Nf / (Nm + Nf), from the breeding males and females (Wright 1931). Assumes equal chances
/// among the animals of a sex. No interval.
SPX_EXPORT effective_size effectiveSizeBySexRatio(std::size_t males, std::size_t females);

/// (N k - 1) / (k - 1 + V / k), from the mean k and the variance V of the numbers of offspring, which
/// is (4N - 2) / (V + 2) for k = 2 (Crow & Kimura 1970). Assumes generations that do not overlap, and
/// life-time numbers. The interval is that of the jackknife over the animals.
SPX_EXPORT effective_size effectiveSizeByFamilySize(std::span<const std::size_t> offspring);

/// Which exponent individual increases in inbreeding have.
enum class INCREASE { SINCE_FOUNDERS, SINCE_FIRST_OFFSPRING };

/// 1 / (2 mean dF) over the animals of a set, where dF = 1 - (1 - F)^(1/t) with t equivalent complete
/// generations (Gutiérrez et al. 2008), or the exponent 1/(t - 1), as the offspring of founders cannot
/// be inbred (Gutiérrez, Cervantes & Goyache 2009). Standard error 2 Ne^2 sd / sqrt(N). Animals whose
/// exponent is not positive and finite are left out and counted.
SPX_EXPORT effective_size effectiveSizeByInbreeding(std::span<const animal_number> set,
                                                    std::span<const double> inbreeding,
                                                    std::span<const double> equivalent, INCREASE increase);

/// 1 / (2 mean dc) over all pairs of a set, where dc = 1 - (1 - k)^(2/(t_1 + t_2)) with their kinship
/// k (Cervantes et al. 2011). Standard error 2 Ne^2 sd / sqrt(N), N being the animals. Animals with
/// t = 0 are left out and counted. Quadratic in the animals; nothing of that size is kept.
SPX_EXPORT effective_size effectiveSizeByKinship(const GeneticPedigree& pedigree, const relationship_terms& terms,
                                                 std::span<const animal_number> set, std::span<const double> equivalent,
                                                 unsigned threads = 1);

/// 1 / (2 dF), dF = 1 - exp(b L), where b is the slope of ln(1 - F) on the birth date of the animals
/// of a set and L the generation interval in the same unit (Pérez-Enciso 1995).
/// @param births  by node, in any unit; animals with NaN are left out and counted
SPX_EXPORT effective_size effectiveSizeByTrend(std::span<const animal_number> set, std::span<const double> inbreeding,
                                               std::span<const double> births, double generation_interval);

/// Effective size with overlapping generations from life-time families (Hill 1979):
/// 1/Ne = [2 + Vmm + 2 (M/F) Cmm,mf + (M/F)^2 Vmf] / (16 M L) + [2 + (F/M)^2 Vfm + 2 (F/M) Cfm,ff + Vff] / (16 F L),
/// where M males and F females are born in a unit of time, V are the variances and C the covariances of
/// the numbers of sons (m) and daughters (f) of a male (first letter) or a female. The males and
/// females of a set that were born from `first_birth` to `last_birth` count, with all their
/// offspring; an offspring of unknown sex counts as half a son and half a daughter. Assumes a
/// stable population. No interval. NaN when fewer than two animals of a sex count.
/// @param births  by node, in the unit of the generation interval L and of the days
/// @param sexes   by node
SPX_EXPORT effective_size effectiveSizeByLifetimeFamilies(const GeneticPedigree& pedigree,
                                                          std::span<const double> births, std::span<const SEX> sexes,
                                                          std::span<const animal_number> set, double first_birth,
                                                          double last_birth, double generation_interval);

/// The gene diversity expected after some years: GD (1 - 1 / (2 Ne))^(years / L) (Soulé et al. 1986).
SPX_EXPORT double diversityAhead(double diversity, double effective_size, double years, double generation_interval);

}  // namespace spx
