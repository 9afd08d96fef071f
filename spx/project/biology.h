#pragma once

#include "spx/core/enumerations.h"
#include "spx/support/configuration.h"
#include "spx/support/data_range.h"
#include "spx/support/export.h"

namespace spx {

/// The life history of the species: names, reproduction, longevity. Every parameter is an entry of
/// the key file "taxon.biology" and is converted whenever it is read; ages, intervals and durations
/// are in days, written with two decimals. Values are not validated. The host sets the directory, and
/// calls save(). docs/key-files.md lists the keys.
class SPX_EXPORT Biology : public qs_lib::Configuration {
 public:
  /// All parameters at their defaults.
  Biology();

  /// Sets every parameter to its default. Ranges start inverted, lower 36500 and upper 0, on
  /// purpose: the first observed value then becomes both bounds of a range that observations widen.
  void initialize();

  /// The scientific name of the species.
  void setLatinName(const std::string& name);
  /// The name of the species in everyday use.
  void setCommonName(const std::string& name);
  /// How the species bears its young; the entry holds the display name.
  void setReproductiveSystem(REPRODUCTIVE_SYSTEM system);
  /// Whether births have a season; the entry holds the display name.
  void setReproductiveSeason(REPRODUCTIVE_SEASON season);
  void setGestation(double days);  ///< the length of gestation or incubation
  /// Days after birth when offspring emerges from the den.
  void setDenEmerge(double days);
  /// Delayed implantation, in days before birth.
  void setImplantation(double days);
  /// The shortest and longest observed interval between births, in days.
  void setBirthInterval(qs_lib::DataRange<double> days);
  /// The range in birth dates of one litter or clutch.
  void setBirthDateRange(double days);
  /// The largest observed number of offspring of one litter or clutch.
  void setMaxLitterSize(int size);
  /// The youngest and oldest observed age at reproduction; a sex other than male and female sets
  /// nothing.
  void setReproductiveAge(SEX sex, qs_lib::DataRange<double> days);
  /// The largest observed longevity; a sex other than male and female sets nothing.
  void setLongevity(SEX sex, double days);
  /// The upper limit of neonatal age.
  void setNeonatalAge(double days);

  // A text that is not a number reads as NaN; a number beyond the range of a double raises
  // std::out_of_range.

  /// In days.
  double getGestation() const;
  /// In days.
  qs_lib::DataRange<double> getBirthInterval() const;
  /// 0 for a sex other than male and female.
  double getLongevity(SEX sex) const;
  /// (0, 0) for a sex other than male and female.
  qs_lib::DataRange<double> getReproductiveAge(SEX sex) const;
};

/// The life history of the species in use.
extern SPX_EXPORT Biology LifeHistory;

}  // namespace spx
