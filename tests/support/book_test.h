#pragma once

#include <limits>
#include <string>
#include <utility>

#include "spx/core/animal_data.h"
#include "spx/core/meta_population.h"
#include "spx/core/studbook.h"
#include "spx/core/user_fields.h"
#include "spx/project/biology.h"
#include "spx/views/data_filter.h"

#include "tests/support/expected_file.h"
#include "tests/support/temporary_home.h"

namespace spx {

inline constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

/// Markup, quotes, a separator, control characters, line breaks and bytes that are not UTF-8.
inline const std::string HOSTILE = "<a b='c'>&\"#|;\t\n\r]]>?>--\x01\xFF\xC3(\xED\xA0\x80 \xC3\xA9";
inline const std::string HOSTILE_AS_XML =
    "&lt;a b='c'&gt;&amp;\"#|;\t\n&#13;]]&gt;?&gt;--\xC3\xBF\xC3\x83(\xC3\xAD\xC2\xA0\xC2\x80 "
    "\xC3\xA9";

inline qs_lib::day_number dayFrom(const std::string& date) {
  return qs_lib::msToDay(qs_lib::dateToJulian(date));
}

/// Empty process-wide objects, two demes and a view that includes everything.
class BookTest : public TemporaryHome {
 protected:
  BookTest() {
    Animals.clearStudbook();
    MetaPop = MetaPopulation();
    resetView();
    Subspecies = SubTaxa();
    user_field_list.clear();
    LifeHistory.initialize();
    Book = Studbook();
    MetaPop.addLevel("site");
    berlin = MetaPop.addMember("1", "Berlin");
    kew = MetaPop.addMember("2", "Kew & Sons");
  }

  // Dates that do not depend on today, and every origin.
  static void resetView() {
    View.clearView();
    View.origin = BIRTH_TYPE::ALL;
    View.end_date = dayFrom("2020-12-31");
    View.monitor_date = dayFrom("2004-01-01");
    Animals.selection(true);
  }

  static master_data& add(const std::string& id, const std::string& sire, const std::string& dam, SEX sex,
                          const std::string& birth, packed_deme site) {
    Animals.addMaster({});
    master_data& animal = Animals.records.back();
    initializeMaster(animal);
    animal.stud_id = id;
    animal.sire_id = sire;
    animal.dam_id = dam;
    animal.sex = sex;
    animal.birth_type = BIRTH_TYPE::CAPTIVE_BORN;
    animal.birth.date = dayFrom(birth);
    animal.birth.location = site;
    return animal;
  }

  // Born in Berlin, but 7 at Kew, where 4 went in 1999:
  //
  //   WILD x WILD   WILD x WILD
  //        1 (m) --+-- 2 (f)
  //                |
  //        +-------+-----------+
  //       3 (f)               4 (m, lost in 2005)
  //        |                   |
  //   UNK x 3   MULTI 3 x 3    4 x UNKF
  //      5 (f, d. 2003)  "O'Hara #6" (?)  7 (m)
  //
  // The pseudo parents come first, at the positions 0 to 4.
  void drawFamily() {
    Animals.initialize(20);
    user_field_list = {{"Chip", qs_lib::FIELD_TYPE::TEXT}, {"Colour", qs_lib::FIELD_TYPE::TEXT}};
    add("1", "WILD", "WILD", SEX::MALE, "1990-05-01", berlin).birth_type = BIRTH_TYPE::WILD_BORN;
    add("2", "WILD", "WILD", SEX::FEMALE, "1991", berlin).birth.accuracy = DATE_ACCURACY::BY_YEAR;
    master_data& third = add("3", "1", "2", SEX::FEMALE, "1995-06-02", berlin);
    third.fcoef = 0.0625;
    setAnimalGeneration(third, 1.0);
    third.user_data = {"A-17"};
    master_data& fourth = add("4", "1", "2", SEX::MALE, "1996-02-29", berlin);
    fourth.moves = {fourth.birth};
    fourth.moves[0].date = dayFrom("1999-03-01");
    fourth.moves[0].location = fourth.death.location = kew;
    fourth.moves[0].event = MOVE_TYPE::ARRIVAL;
    setAnimalGeneration(fourth, -0.5);
    fourth.death.date = dayFrom("2005-08-09");
    fourth.death.event = MOVE_TYPE::LOST_TO_FOLLOW_UP;
    master_data& fifth = add("5", "UNK", "3", SEX::FEMALE, "2000-02-29", berlin);
    fifth.death.date = dayFrom("2003-01-01");
    fifth.death.event = MOVE_TYPE::DEATH;
    add("O'Hara #6", "MULTI 3", "3", SEX::UNKNOWN, "2001-07-01", berlin).taxon = Subspecies.add("kob");
    add("7", "4", "UNKF", SEX::MALE, "2002-11-12", kew).death.accuracy = DATE_ACCURACY::UNKNOWN;
    Animals.createIndex(SORT_FIELD::BIRTH);
    Animals.assignIdKeys();
    Animals.flagBreeders();
    takeOutput();
  }

  static std::string idsOf(bool (*has)(const master_data&)) {
    std::string ids;
    for (const master_data& animal : Animals.records) {
      ids += has(animal) ? animal.stud_id + " " : "";
    }
    return ids;
  }

  packed_deme berlin;
  packed_deme kew;
};

}  // namespace spx
