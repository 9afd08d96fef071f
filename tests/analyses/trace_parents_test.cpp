#include "spx/analyses/trace_parents.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <tuple>

#include "spx/views/predicates.h"

#include "tests/support/book_test.h"
#include "tests/support/well_formed.h"

namespace spx {
namespace {

class Tracing : public BookTest {
 protected:
  std::string traced(const std::string& directory) {
    analysis.setReportDirectory(directory);
    EXPECT_TRUE(analysis.initialize());
    EXPECT_TRUE(analysis.trace());
    return contentOf(directory + "/parents-all.xml");
  }

  static void setAges(double lower, double upper) {
    LifeHistory.setReproductiveAge(SEX::MALE, {lower, upper});
    LifeHistory.setReproductiveAge(SEX::FEMALE, {lower, upper});
  }

  TraceParents analysis;
};

TEST_F(Tracing, ReportsGroupsAndUnknownParentsAndFallsBackToAnyPlace) {
  drawFamily();
  LifeHistory.setGestation(240);
  setAges(700, 5000);
  const std::size_t entries = Animals.pedigree.size();
  Animals.pedigree.resize(1);
  const std::string report = traced(home);
  EXPECT_EQ(Animals.pedigree.size(), entries) << "the pedigree is rebuilt";
  EXPECT_TRUE(analysis.isReportWritten());
  EXPECT_EQ(Animals.sortField(), SORT_FIELD::STUDBOOK_ID);
  expectFile(masked(report, qs_lib::getTodayAsISO()), "analyses/expected/parents.xml");
}

TEST_F(Tracing, ChecksTheAgeAtBirthAndLifeAtConception) {
  const master_data child = add("child", "UNK", "UNK", SEX::MALE, "2001-01-01", berlin);
  add("sire", "WILD", "WILD", SEX::MALE, "2000-01-01", berlin);  // 366 days before
  add("dam", "WILD", "WILD", SEX::FEMALE, "2000-01-01", berlin);
  // Gestation, ages, death of the sire; numbers of sires and dams.
  const std::tuple<double, double, double, const char*, unsigned, unsigned, const char*> cases[] = {
      {0, 36500, 0, "", 0, 0, "the inverted default"},
      {0, NOT_A_NUMBER, 400, "", 0, 0, "no lower bound"},
      {0, 300, NOT_A_NUMBER, "", 0, 0, "no upper bound"},
      {0, -HUGE_VAL, HUGE_VAL, "", 2, 1, "the animal itself included"},
      {344.4, 366, 366, "", 1, 1, "conceived on the sire's day of birth, 365.925 days before"},
      {345, 366, 366, "", 0, 1, "conceived 366.5625 days before, on day -1 of the sire"},
      {100, 300, 400, "2000-09-18", 1, 1, "dead at the birth, alive at conception 106.25 before"},
      {100, 300, 400, "2000-09-16", 0, 1, "dead on the day of conception"},
      {NOT_A_NUMBER, 300, 400, "", 0, 1, "conception is NaN"},
      {1e300, 300, 400, "", 0, 1, "conception before all days"},
      {-1e300, 300, 400, "", 0, 1, "conception after all days"}};
  for (const auto& [gestation, lower, upper, death, sires, dams, why] : cases) {
    LifeHistory.setGestation(gestation);
    setAges(lower, upper);
    Animals.records[1].death.date = dayFrom(death);
    Animals.createIndex(SORT_FIELD::BIRTH);
    Animals.index.clear();  // is built again, in birth order
    ASSERT_TRUE(analysis.initialize());
    EXPECT_EQ(analysis.trackSire(child, true), sires) << why;
    EXPECT_EQ(analysis.trackDam(child, true), dams) << why;
  }
}

// The IDs of the candidates of one sex, found by a scan of all animals in birth order.
std::string scanned(const std::vector<master_data>& born, const master_data& animal, SEX sex, bool same) {
  const double gestation = sex == SEX::MALE ? LifeHistory.getGestation() : 0;
  const auto day = static_cast<qs_lib::day_number>(animal.birth.date - 1.0625 * gestation);
  const qs_lib::DataRange<double> ages = LifeHistory.getReproductiveAge(sex);
  std::string found;
  for (const master_data& other : born) {
    const double age = static_cast<double>(animal.birth.date) - other.birth.date;
    if (other.sex == sex && other.stud_id[0] != 'P' && isLiving(other, day) && ages.isInRange(age, "[]") &&
        (!same || currentDeme(other, day) == animal.birth.location)) {
      found += (sex == SEX::MALE ? "SIRE " : "DAM ") + other.stud_id + " ";
    }
  }
  return found;
}

std::string scannedAnimal(const std::vector<master_data>& born, const master_data& animal) {
  std::string text;
  bool is_asked = false;
  for (const bool as_group : {true, false}) {
    for (const SEX sex : {SEX::MALE, SEX::FEMALE}) {
      const std::string& parent = sex == SEX::MALE ? animal.sire_id : animal.dam_id;
      if (as_group ? isMultiParent(parent) : parent.substr(0, 3) == "UNK") {
        const std::string here = scanned(born, animal, sex, true);
        text += here.empty() && !as_group ? scanned(born, animal, sex, false) : here;
        is_asked = true;
      }
    }
  }
  return is_asked && !isPseudoIndividual(animal.stud_id) ? "ANIMAL " + animal.stud_id + " " + text : "";
}

TEST_F(Tracing, FindsWhatAScanOfAllPairsFinds) {
  const char* const parents[] = {"UNK", "UNKM", "unk", "MULT 7", "MULT", "WILD", "3"};
  const packed_deme sites[] = {0, berlin, kew};
  for (unsigned seed = 0; seed < 20; ++seed) {
    std::mt19937 random(seed);
    const auto any = [&random](unsigned below) { return static_cast<unsigned>(random() % below); };
    Animals.clearStudbook();
    LifeHistory.setGestation(any(60));
    setAges(any(100), 50 + any(200));
    for (unsigned i = 0; i < 60; ++i) {
      master_data& animal = add((any(9) == 0 ? "P" : "") + std::to_string(i), parents[any(7)], parents[any(7)],
                                SEX{any(3)}, "2000-01-01", sites[any(3)]);
      animal.birth.date += any(300);
      animal.death.date = any(2) * (animal.birth.date + any(200));
      animal.breeder = any(2) != 0;
      animal.moves.assign(any(4), animal.birth);
      for (move_data& move : animal.moves) {
        move.date += any(150);
        move.location = sites[any(3)];
      }
    }
    std::vector<master_data> born = Animals.records;
    std::stable_sort(born.begin(), born.end(),
                     [](const master_data& a, const master_data& b) { return a.birth.date < b.birth.date; });
    std::string expected;
    for (const master_data& animal : born) {
      expected += scannedAnimal(born, animal);
    }
    const std::string report = traced(home);
    const std::regex element("<(ANIMAL|SIRE|DAM)>\\s*<ID>([^<]*)");
    std::string found;
    for (std::sregex_iterator at(report.begin(), report.end(), element), end; at != end; ++at) {
      found += at->str(1) + " " + at->str(2) + " ";
    }
    EXPECT_EQ(found, expected) << seed;
    ASSERT_TRUE(analysis.initialize());
    std::size_t candidates = 0;
    for (const master_data& animal : Animals.records) {
      for (const SEX sex : {SEX::MALE, SEX::FEMALE}) {
        candidates += analysis.possibleParents(animal, sex).size();
      }
    }
    const std::regex parent("(SIRE|DAM) ");
    EXPECT_EQ(candidates, std::distance(std::sregex_iterator(found.begin(), found.end(), parent), {})) << seed;
  }
}

TEST_F(Tracing, CountsAlsoWhenNothingCanBeWritten) {
  drawFamily();
  Animals.pedigree.clear();
  std::filesystem::create_directory(at("full"));
  std::filesystem::create_symlink("/dev/full", at("full/parents-all.xml"));
  const std::string errors = "Cannot create report file\nCannot re-open report file to write footer\n";
  const std::pair<std::string, std::string> cases[] = {{at("missing"), errors}, {"/proc", errors}, {at("full"), ""}};
  for (const auto& [directory, reported] : cases) {
    analysis.setReportDirectory(directory);
    EXPECT_TRUE(analysis.initialize());
    EXPECT_TRUE(analysis.trace());
    EXPECT_FALSE(analysis.isReportWritten()) << directory;
    EXPECT_EQ(takeErrors(), reported) << directory;
    EXPECT_EQ(analysis.sire_only + 10 * analysis.dam_only + 100 * analysis.multi_sire, 111U);
  }
  EXPECT_TRUE(Animals.pedigree.empty());
  Animals.records.back().stud_id = HOSTILE;
  Animals.records.back().birth.location = MetaPop.addMember("9", HOSTILE);
  expectWellFormed(at("parents-all.xml"), traced(home));
  EXPECT_TRUE(analysis.isReportWritten());
}

}  // namespace
}  // namespace spx
