#pragma once

#include <filesystem>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "spx/core/animal_data.h"

#include "tests/support/temporary_home.h"

namespace spx {

inline qs_lib::day_number dayOf(const char* date) {
  return qs_lib::msToDay(qs_lib::dateToJulian(std::string(date)));
}

/// A bare record, as a host's loader makes it.
inline master_data animalOf(std::string id, std::string sire, std::string dam, SEX sex, qs_lib::day_number birth,
                            qs_lib::day_number death = 0) {
  master_data animal;
  initializeMaster(animal);
  animal.stud_id = std::move(id);
  animal.sire_id = std::move(sire);
  animal.dam_id = std::move(dam);
  animal.sex = sex;
  animal.birth.date = birth;
  animal.death.date = death;
  animal.death.event = MOVE_TYPE::DEATH;
  return animal;
}

/// An empty store in a home directory of its own.
class StoreTest : public TemporaryHome {
 protected:
  StoreTest() { Animals.clearStudbook(); }

  /// The IDs at positions, one blank after each.
  template <class Positions>
  static std::string idsOf(const Positions& positions) {
    std::string ids;
    for (const position record : positions) {
      ids += Animals.records[record].stud_id + " ";
    }
    return ids;
  }

  /// The records for which a flag is set.
  static std::set<position> flagged(bool master_data::*flag) {
    std::set<position> found;
    for (position record = 0; record < Animals.records.size(); ++record) {
      if (Animals.records[record].*flag) {
        found.insert(record);
      }
    }
    return found;
  }
};

/// A family without the pseudo parents, which tests add where they need them:
///
///     WILD x WILD   WILD x WILD
///          |             |
///          12 (m) --+-- 9 (f)         99: no record
///                   |
///      +------------+------+
///     20 (f)          21 (m, dead)    21 (f): another animal with the same ID
///      |               |
///   UNK x 20      99 x 20   21 x 30
///     30 (?)      31 (f)     40 (m)
class FamilyTest : public StoreTest {
 protected:
  FamilyTest() {
    const auto add = [](const char* id, const char* sire, const char* dam, SEX sex, const char* birth,
                        const char* death = "") {
      Animals.addMaster(animalOf(id, sire, dam, sex, dayOf(birth), dayOf(death)));
    };
    add("12", "WILD", "WILD", SEX::MALE, "1991-05-01");
    add("9", "WILD", "WILD", SEX::FEMALE, "1990");
    add("20", "12", "9", SEX::FEMALE, "1995-06-02");
    add("21", "12", "9", SEX::MALE, "1995-06-01", "1999-03-02");
    add("21", "12", "9", SEX::FEMALE, "1997-07-04");
    add("30", "UNK", "20", SEX::UNKNOWN, "2000-02-29");
    add("31", "99", "20", SEX::FEMALE, "2001");
    add("40", "21", "30", SEX::MALE, "2000-02-29");
  }
};

}  // namespace spx
