#pragma once

#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "spx/core/animal_data.h"
#include "spx/demography/presence.h"
#include "spx/support/number_text.h"

/// Lives written as lines of text, and their stays as text.
namespace spx {

inline qs_lib::day_number dayOf(const char* date) {
  return qs_lib::msToDay(qs_lib::dateToJulian(std::string(date)));
}

inline packed_deme place(int number) {
  DemeID id;
  id.blocks[0] = static_cast<std::uint8_t>(number);
  return id.binary();
}

/// A date as tables have it: "2001" and "2001-04" are known by year and by month, "?" is a guess.
inline move_data dated(std::string text, MOVE_TYPE event, int location) {
  move_data move;
  move.accuracy = text.size() == 4   ? DATE_ACCURACY::BY_YEAR
                  : text.size() == 7 ? DATE_ACCURACY::BY_MONTH
                                     : DATE_ACCURACY::ACCURATE;
  if (text.ends_with('?')) {
    text.pop_back();
    move.accuracy = DATE_ACCURACY::UNKNOWN;
  }
  move.date = qs_lib::msToDay(qs_lib::dateToJulian(text));
  move.event = event;
  move.location = place(location);
  return move;
}

inline MOVE_TYPE kindOf(char letter) {
  switch (letter) {
    case 'w':
      return MOVE_TYPE::FROM_WILD;
    case 'a':
      return MOVE_TYPE::ARRIVAL;
    case 'i':
      return MOVE_TYPE::POPULATION_IN;
    case 's':
      return MOVE_TYPE::SOCIAL_IN;
    case 'm':
      return MOVE_TYPE::MANAGEMENT_OUT;
    case 'r':
      return MOVE_TYPE::RELEASED;
    case 'o':
      return MOVE_TYPE::POPULATION_OUT;
    case 'u':
      return MOVE_TYPE::SURPLUS;
    case 'l':
      return MOVE_TYPE::LOST_TO_FOLLOW_UP;
    case 'd':
      return MOVE_TYPE::DEATH;
    default:
      return MOVE_TYPE::NO_EVENT;
  }
}

/// A life such as "b1 2000-05-01  a2 2003  d2 2010-01-01": born at 1, arrived at 2, died at 2.
/// Letters: b birth in captivity, B birth in the wild, w from wild, a arrival, i population in,
/// s social in, m management out, r released, o population out, u surplus, l lost, d death, n none.
/// A death or loss that comes last is the record's end.
inline master_data lifeOf(const std::string& line, const std::string& id = "1", SEX sex = SEX::FEMALE) {
  master_data animal;
  initializeMaster(animal);
  animal.stud_id = id;
  animal.sex = sex;
  animal.birth_type = line.starts_with('B') ? BIRTH_TYPE::WILD_BORN : BIRTH_TYPE::CAPTIVE_BORN;
  std::istringstream words(line);
  for (std::string what, date; words >> what >> date;) {
    const int location = what.size() > 1 ? std::stoi(what.substr(1)) : 0;
    if (what[0] == 'b' || what[0] == 'B') {
      animal.birth = dated(date, MOVE_TYPE::BIRTH, location);
    } else {
      animal.moves.push_back(dated(date, kindOf(what[0]), location));
    }
  }
  if (!animal.moves.empty() &&
      (animal.moves.back().event == MOVE_TYPE::DEATH || animal.moves.back().event == MOVE_TYPE::LOST_TO_FOLLOW_UP)) {
    animal.death = animal.moves.back();
    animal.moves.pop_back();
  }
  return animal;
}

/// Stays such as "born1 2000-05-01 moved2003-07-02, arrived2 2003-07-02 died2010-01-01".
inline std::string textOf(const std::vector<stay>& stays) {
  constexpr const char* STARTS[] = {"born", "entered", "arrived"};
  constexpr const char* ENDS[] = {"there", "died ", "departed ", "lost ", "moved "};
  std::string text;
  for (const stay& one : stays) {
    DemeID location;
    location.set(one.location);
    text += (text.empty() ? "" : ", ") + std::string(STARTS[static_cast<int>(one.start)]) +
            std::to_string(location.blocks[0]) + " " + qs_lib::julianToISO(qs_lib::dayToMs(one.from)) + " " +
            ENDS[static_cast<int>(one.end)];
    if (one.end != STAY_END::PRESENT) text += qs_lib::julianToISO(qs_lib::dayToMs(one.to));
  }
  return text;
}

/// Random lives with dates that may contradict each other in every way.
inline std::vector<master_data> randomLives(unsigned seed, std::size_t count) {
  std::mt19937 random(seed);
  const auto pick = [&random](unsigned below) { return static_cast<int>(random() % below); };
  const auto date = [&] {
    const std::string full = qs_lib::julianToISO(qs_lib::dayToMs(2451545 + random() % 9000));
    return full.substr(0, pick(6) == 0 ? 4 : 10);
  };
  std::vector<master_data> lives;
  for (std::size_t animal = 0; animal < count; ++animal) {
    std::string line = pick(9) == 0 ? "" : (pick(4) == 0 ? "B" : "b") + std::to_string(1 + pick(3)) + " " + date();
    for (int events = pick(5); events > 0; --events) {
      line += std::string(" ") + "waismrouln"[pick(10)] + std::to_string(1 + pick(3)) + " " + date();
    }
    if (pick(2) == 0) line += " d1 " + date();
    lives.push_back(lifeOf(line, std::to_string(animal)));
  }
  return lives;
}

}  // namespace spx
