#include "spx/project/biology.h"

#include "spx/support/number_text.h"

namespace spx {
namespace {

constexpr double UNOBSERVED_LOWER = 36500;
constexpr double UNOBSERVED_UPPER = 0;
constexpr qs_lib::DataRange<double> UNOBSERVED = {UNOBSERVED_LOWER, UNOBSERVED_UPPER};
constexpr double DEFAULT_NEONATAL_AGE = 30;

std::string daysText(double days) {
  return qs_lib::realToString(days, 2);
}

template <class Enumeration>
std::string numberText(Enumeration value) {
  return std::to_string(static_cast<std::uint32_t>(value));
}

}  // namespace

Biology::Biology() {
  setSection("BIOLOGY");
  setName("taxon");
  setExtension("biology");
  setSaveOnClose(false);
  setMatchSection(true);
  initialize();
}

void Biology::initialize() {
  setLatinName("");
  setCommonName("");
  setReproductiveSystem(REPRODUCTIVE_SYSTEM::UNKNOWN);
  setReproductiveSeason(REPRODUCTIVE_SEASON::BIRTH_PULSE);
  setGestation(0);
  setDenEmerge(0);
  setImplantation(0);
  setBirthInterval(UNOBSERVED);
  setBirthDateRange(0);
  setMaxLitterSize(0);
  setReproductiveAge(SEX::MALE, UNOBSERVED);
  setReproductiveAge(SEX::FEMALE, UNOBSERVED);
  setLongevity(SEX::MALE, 0);
  setLongevity(SEX::FEMALE, 0);
  setNeonatalAge(DEFAULT_NEONATAL_AGE);
}

void Biology::setLatinName(const std::string& name) {
  set("LATIN_NAME", "TEXT", name, "Scientific name");
}

void Biology::setCommonName(const std::string& name) {
  set("COMMON_NAME", "TEXT", name, "English name");
}

void Biology::setReproductiveSystem(REPRODUCTIVE_SYSTEM system) {
  set("REPRODUCTIVE_SYSTEM", "INTEGER", numberText(system), "Reproductive system: " + getEnumName(system));
}

void Biology::setReproductiveSeason(REPRODUCTIVE_SEASON season) {
  set("REPRODUCTIVE_SEASON", "INTEGER", numberText(season), "Reproductive season: " + getEnumName(season));
}

void Biology::setGestation(double days) {
  set("GESTATION", "REAL", daysText(days), "Gestation length");
}

// The type word of these two is DOUBLE, that of the others REAL. Kept on purpose: part of the format.
void Biology::setDenEmerge(double days) {
  set("DEN_EMERGE", "DOUBLE", daysText(days), "Days after birth when offspring emerges from den");
}

void Biology::setImplantation(double days) {
  set("IMPLANTATION", "DOUBLE", daysText(days), "Delayed implantation in days before birth");
}

void Biology::setBirthInterval(qs_lib::DataRange<double> days) {
  set("BIRTH_INTERVAL_LOWER", "REAL", daysText(days.lower), "Lower range of inter-birth interval");
  set("BIRTH_INTERVAL_UPPER", "REAL", daysText(days.upper), "Upper range of inter-birth interval");
}

void Biology::setBirthDateRange(double days) {
  set("BIRTHDATE_RANGE", "REAL", daysText(days), "Range in birth/hatch dates of same litter/clutch");
}

void Biology::setMaxLitterSize(int size) {
  set("MAX_LITTER_SIZE", "INTEGER", std::to_string(size), "Largest observed litter/clutch size");
}

void Biology::setReproductiveAge(SEX sex, qs_lib::DataRange<double> days) {
  if (sex == SEX::MALE) {
    set("MALE_REPRODUCTIVE_LOWER", "REAL", daysText(days.lower), "Youngest observed age at reproduction in males");
    set("MALE_REPRODUCTIVE_UPPER", "REAL", daysText(days.upper), "Oldest observed age at reproduction in males");
  } else if (sex == SEX::FEMALE) {
    set("FEMALE_REPRODUCTIVE_LOWER", "REAL", daysText(days.lower), "Youngest observed age at reproduction in females");
    set("FEMALE_REPRODUCTIVE_UPPER", "REAL", daysText(days.upper), "Oldest observed age at reproduction in females");
  }
}

void Biology::setLongevity(SEX sex, double days) {
  if (sex == SEX::MALE) {
    set("MAX_MALE_LONGEVITY", "REAL", daysText(days), "Largest observed longevity in males (days)");
  } else if (sex == SEX::FEMALE) {
    set("MAX_FEMALE_LONGEVITY", "REAL", daysText(days), "Largest observed longevity in females (days)");
  }
}

void Biology::setNeonatalAge(double days) {
  set("NEONATAL_AGE", "REAL", daysText(days), "Upper limit of neonatal age (in days)");
}

double Biology::getGestation() const {
  return get("GESTATION").value.real();
}

qs_lib::DataRange<double> Biology::getBirthInterval() const {
  return {get("BIRTH_INTERVAL_LOWER").value.real(), get("BIRTH_INTERVAL_UPPER").value.real()};
}

double Biology::getLongevity(SEX sex) const {
  switch (sex) {
    case SEX::MALE:
      return get("MAX_MALE_LONGEVITY").value.real();
    case SEX::FEMALE:
      return get("MAX_FEMALE_LONGEVITY").value.real();
    default:
      return 0;
  }
}

qs_lib::DataRange<double> Biology::getReproductiveAge(SEX sex) const {
  switch (sex) {
    case SEX::MALE:
      return {get("MALE_REPRODUCTIVE_LOWER").value.real(), get("MALE_REPRODUCTIVE_UPPER").value.real()};
    case SEX::FEMALE:
      return {get("FEMALE_REPRODUCTIVE_LOWER").value.real(), get("FEMALE_REPRODUCTIVE_UPPER").value.real()};
    default:
      return {0, 0};
  }
}

}  // namespace spx
