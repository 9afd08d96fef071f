#include "bench/example_studbook.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string_view>
#include <tuple>
#include <vector>

#include "bench/dice.h"

namespace {

constexpr int FIRST_YEAR = 1975;
constexpr int LAST_YEAR = 2024;
constexpr int ZOOS = 8;
constexpr int NEVER = 1 << 30;

constexpr std::string_view ZOO_IDS[ZOOS] = {"2.1", "2.2", "2.3", "2.4", "3.1", "3.2", "3.3", "3.4"};
constexpr int CAPACITY[ZOOS] = {22, 16, 14, 12, 20, 14, 10, 8};
constexpr int OPENS[ZOOS] = {1975, 1975, 1983, 1991, 1976, 1988, 1995, 2004};

constexpr char LOCATIONS[] =
    "level,id,name,latitude,longitude\n"
    "region,1,Range country,,\n"
    "region,2,Northern zoos,,\n"
    "region,3,Southern zoos,,\n"
    "institution,1.1,Reedmarsh,-13.40,45.90\n"
    "institution,1.2,Lake Onda Reserve,-13.85,46.05\n"
    "institution,2.1,Alderhay Zoo,54.31,-2.75\n"
    "institution,2.2,Brackholt Park,52.94,6.55\n"
    "institution,2.3,Culmere Zoo,55.62,12.08\n"
    "institution,2.4,Duskfell Park,57.70,14.16\n"
    "institution,3.1,Ferrolane Zoo,43.77,1.44\n"
    "institution,3.2,Gavessa Zoo,41.12,8.93\n"
    "institution,3.3,Hortigal Park,38.72,-5.21\n"
    "institution,3.4,Isombra Zoo,37.41,13.30\n";

// The chance to die in each year of age, in thousandths; the last value holds for all older animals.
constexpr std::uint32_t FEMALE_DEATHS[] = {230, 60,  45,  40,  40,  45,  50,  60,  70,
                                           85,  105, 130, 165, 210, 270, 340, 430, 550};
constexpr std::uint32_t MALE_DEATHS[] = {270, 90, 75, 75, 80, 90, 105, 125, 150, 185, 225, 280, 350, 430, 520, 620};
// The chance to give birth in each year of age, in thousandths.
constexpr std::uint32_t BIRTHS[] = {0, 0, 280, 640, 700, 700, 700, 690, 670, 640, 600, 540, 460, 360, 240, 120, 40, 0};

template <std::size_t SIZE>
std::uint32_t chanceAt(const std::uint32_t (&chances)[SIZE], int age) {
  return chances[std::min<std::size_t>(static_cast<std::size_t>(age), SIZE - 1)];
}

enum class exactness { day, month, year };

/// A day and how precisely the table gives it.
struct dated {
  int day = 0;  ///< after 1970-01-01
  exactness exact = exactness::day;
};

std::chrono::year_month_day civil(int day) {
  return std::chrono::sys_days{std::chrono::days{day}};
}

int dayOf(int year, unsigned month, unsigned day) {
  const std::chrono::year_month_day date{std::chrono::year{year}, std::chrono::month{month}, std::chrono::day{day}};
  return std::chrono::sys_days{date}.time_since_epoch().count();
}

std::string textOf(dated date) {
  const auto parts = civil(date.day);
  char text[16];
  std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(parts.year()),
                static_cast<unsigned>(parts.month()), static_cast<unsigned>(parts.day()));
  return std::string(text).substr(0, date.exact == exactness::year ? 4 : date.exact == exactness::month ? 7 : 10);
}

struct event {
  dated date;
  std::string_view kind;
  std::string_view place;
};

struct animal {
  dated birth;
  int range = 0;      ///< days to either side, for founders of estimated age
  int death = NEVER;  ///< the day on which it will die
  bool male = false;
  bool sexed = true;
  bool wild = false;
  bool hand_reared = false;
  int sire = 0;  ///< number, or one of the words below
  int dam = 0;
  int zoo = 0;
  std::string_view birthplace;
  bool here = true;  ///< in one of the zoos
  std::vector<event> events;
  dated end;
  std::string_view end_kind;
  std::string_view end_place;
};

constexpr int WILD = 0;
constexpr int UNKNOWN = -1;
constexpr int SEVERAL = -2;

class Zoos {
 public:
  explicit Zoos(std::uint64_t seed) : dice_(seed) {}

  void run() {
    for (int year = FIRST_YEAR; year <= LAST_YEAR; ++year) {
      // Births are in spring, captures before and transfers after them, so that parents are together when they mate.
      leave(year);
      breed(year);
      capture(year);
      transfer(year);
      die(year);
    }
  }

  bool write(const std::string& directory) const;

 private:
  // Whether the animal's last event lies on or after the day: an animal that was sold is not moved
  // before it has come back.
  static bool isBusy(const animal& one, int day) { return !one.events.empty() && one.events.back().date.day >= day; }

  static int ageIn(const animal& one, int year) { return year - static_cast<int>(civil(one.birth.day).year()); }

  // How precise dates of a year are: before 1990 keepers did not always record the day.
  exactness exactnessIn(int year) {
    const std::uint32_t lot = dice_.below(100);
    if (year >= 1990) return exactness::day;
    return lot < 6 ? exactness::year : lot < 14 ? exactness::month : exactness::day;
  }

  void capture(int year) {
    const bool first_wave = year <= 1980;
    const int caught = first_wave ? dice_.between(3, 5) : year == 1994 || year == 1996 ? 4 : 0;
    for (int number = 0; number < caught; ++number) {
      animal one;
      const int born = year - dice_.between(1, 4);
      one.birth = {dayOf(born, 5, 20), exactness::year};
      if (dice_.permille(250)) one.range = 400;
      if (one.range != 0) one.birth.exact = exactness::day;
      one.male = dice_.permille(400);
      one.wild = true;
      one.sire = one.dam = WILD;
      one.birthplace = "1.1";
      one.zoo = openZoo(year);
      const int day = dayOf(year, 1, 10) + dice_.between(0, 60);
      one.events.push_back({{day}, "from wild", ZOO_IDS[one.zoo]});
      one.death = drawDeath(one, std::max(ageIn(one, year), 1), day);
      animals_.push_back(one);
    }
  }

  int openZoo(int year) {
    int zoo = 0;
    do {
      zoo = dice_.between(0, ZOOS - 1);
    } while (OPENS[zoo] > year);
    return zoo;
  }

  // Draws the day of death of an animal that is alive on the given day at the given age.
  int drawDeath(const animal& one, int age, int day) {
    for (int at = age;; ++at) {
      if (dice_.permille(one.male ? chanceAt(MALE_DEATHS, at) : chanceAt(FEMALE_DEATHS, at))) {
        return std::max(day + (at - age) * 365 + (at - age) / 4 + daysIntoYear(at), day);
      }
    }
  }

  // The day of death within a year of age: most of the young that die do so within a month, older
  // animals die on any day.
  int daysIntoYear(int age) {
    if (age > 0) return dice_.between(0, 364);
    const std::uint32_t lot = dice_.below(100);
    return lot < 22 ? 0 : lot < 62 ? dice_.between(1, 30) : dice_.between(31, 364);
  }

  void transfer(int year) {
    for (animal& one : animals_) {
      const int age = ageIn(one, year);
      if (!one.here || age < 1) continue;
      const std::uint32_t chance = one.male ? (age <= 3 ? 260U : 60U) : (age <= 3 ? 90U : 25U);
      const bool moves = dice_.permille(chance);
      const int target = openZoo(year);
      const int day = dayOf(year, 9, 1) + dice_.between(0, 100);
      if (!moves || target == one.zoo || day >= one.death || isBusy(one, day)) continue;
      one.zoo = target;
      one.events.push_back({{day, exactnessIn(year)}, "arrival", ZOO_IDS[target]});
    }
  }

  void leave(int year) {
    const bool release = year == 2006 || year == 2011 || year == 2017;
    int released = 0;
    for (std::size_t at = 0; at < animals_.size(); ++at) {
      animal& one = animals_[at];
      const int age = ageIn(one, year);
      const int day = dayOf(year, 3, 1) + dice_.between(0, 40);
      const std::uint32_t lot = dice_.below(1000);
      if (!one.here || age < 1 || day >= one.death || isBusy(one, day)) continue;
      if (release && age <= 3 && released < 6 && lot < 500) {
        ++released;
        depart(one, day, "released", "1.2");
        afterRelease(one, day);
      } else if (one.male && age >= 2 && lot < 16) {
        depart(one, day, "surplus", ZOO_IDS[one.zoo]);
      } else if (lot >= 990 && year > 1982) {
        depart(one, day, "population out", ZOO_IDS[one.zoo]);
        comeBack(one, day, year);
      } else if (lot >= 984 && lot < 988) {
        end(one, {day, exactnessIn(year)}, "lost-to-follow-up", ZOO_IDS[one.zoo]);
      }
    }
  }

  static void depart(animal& one, int day, std::string_view kind, std::string_view place) {
    one.here = false;
    one.events.push_back({{day}, kind, place});
  }

  void afterRelease(animal& one, int day) {
    const std::uint32_t lot = dice_.below(100);
    const int later = day + dice_.between(60, 900);
    if (lot < 30) {
      end(one, {later, exactness::month}, "death", "1.2");
    } else if (lot < 50) {
      end(one, {later, exactness::month}, "lost-to-follow-up", "1.2");
    }
  }

  void comeBack(animal& one, int day, int year) {
    const int back = day + dice_.between(200, 700);
    if (!dice_.permille(250) || back >= one.death || year + 2 > LAST_YEAR) return;
    one.here = true;
    one.events.push_back({{back}, "population in", ZOO_IDS[one.zoo]});
  }

  void end(animal& one, dated date, std::string_view kind, std::string_view place) {
    one.here = false;
    one.end = date;
    one.end_kind = kind;
    one.end_place = place;
  }

  void breed(int year) {
    int living[ZOOS] = {};
    for (const animal& one : animals_) living[one.zoo] += one.here;
    const std::size_t adults = animals_.size();
    for (std::size_t dam = 0; dam < adults; ++dam) {
      const animal& mother = animals_[dam];
      const std::uint32_t lot = dice_.below(1000);
      const int day = birthday(year);
      if (mother.male || !mother.sexed || !mother.here || mother.death <= day || wasAway(mother, year)) continue;
      const int room = CAPACITY[mother.zoo] - living[mother.zoo];
      const std::uint32_t chance = chanceAt(BIRTHS, std::max(ageIn(mother, year), 0));
      if (lot >= (room > 4 ? chance : room > 0 ? chance * 6 / 10 : chance / 4)) continue;
      const int sire = drawSire(mother.zoo, year);
      if (sire == WILD) continue;
      const bool twins = dice_.permille(70);
      bear(static_cast<int>(dam) + 1, sire, day, year);
      if (twins) bear(static_cast<int>(dam) + 1, sire, day, year);
    }
  }

  // Whether the animal was away in spring; its last event of the year may be later.
  static bool wasAway(const animal& one, int year) {
    return !one.events.empty() && one.events.back().date.day >= dayOf(year, 4, 1) &&
           one.events.back().kind != "arrival";
  }

  // About 20 May.
  int birthday(int year) {
    return dayOf(year, 4, 10) + dice_.between(0, 27) + dice_.between(0, 27) + dice_.between(0, 27);
  }

  int drawSire(int zoo, int year) {
    std::vector<int> males;
    for (std::size_t at = 0; at < animals_.size(); ++at) {
      const animal& one = animals_[at];
      const bool is_adult = one.male && one.sexed && one.here && one.zoo == zoo && ageIn(one, year) >= 3;
      if (is_adult && one.death > dayOf(year, 1, 1)) males.push_back(static_cast<int>(at) + 1);
    }
    const std::uint32_t lot = dice_.below(1000);
    if (males.empty()) return WILD;
    if (males.size() > 1 && lot < 60) return SEVERAL;
    if (lot >= 970) return UNKNOWN;
    // The oldest male is the sire most of the time.
    return dice_.permille(700) ? males.front() : males[dice_.below(static_cast<std::uint32_t>(males.size()))];
  }

  void bear(int dam, int sire, int day, int year) {
    animal one;
    one.birth = {day, exactnessIn(year)};
    one.male = dice_.permille(515);
    one.sire = sire;
    one.dam = dam;
    one.zoo = animals_[static_cast<std::size_t>(dam) - 1].zoo;
    one.birthplace = ZOO_IDS[one.zoo];
    one.death = drawDeath(one, 0, day);
    const bool dies_young = one.death - day <= 30;
    one.sexed = !dice_.permille(dies_young ? 450 : 12);
    one.hand_reared = !dies_young && dice_.permille(70);
    animals_.push_back(one);
  }

  void die(int year) {
    const int last = dayOf(year, 12, 31);
    for (animal& one : animals_) {
      if (!one.here || one.death > last) continue;
      const bool same_day = one.death == one.birth.day;
      end(one, {one.death, same_day ? one.birth.exact : exactnessIn(year)}, "death", ZOO_IDS[one.zoo]);
    }
  }

  Dice dice_;
  std::vector<animal> animals_;  ///< an animal's number is its place in this list, from 1
};

std::string parentText(int parent) {
  switch (parent) {
    case WILD:
      return "WILD";
    case UNKNOWN:
      return "UNK";
    case SEVERAL:
      return "MULT";
    default:
      return std::to_string(parent);
  }
}

std::string rowOf(const animal& one, std::size_t number) {
  std::string row = std::to_string(number) + "," + parentText(one.sire) + "," + parentText(one.dam) + ",";
  row += one.sexed ? one.male ? "male" : "female" : "unknown";
  row += "," + textOf(one.birth) + "," + (one.range != 0 ? std::to_string(one.range) : "") + ",";
  row += std::string(one.birthplace) + ",";
  row += one.end_kind.empty() ? ",,"
                              : textOf(one.end) + "," + std::string(one.end_place) + "," + std::string(one.end_kind);
  return row + (one.wild ? ",wild-born,parent\n" : one.hand_reared ? ",captive-born,hand\n" : ",captive-born,parent\n");
}

bool writeFile(const std::string& name, const std::string& text) {
  std::FILE* file = std::fopen(name.c_str(), "wb");
  if (file == nullptr) return false;
  const bool complete = std::fwrite(text.data(), 1, text.size(), file) == text.size();
  return std::fclose(file) == 0 && complete;
}

bool Zoos::write(const std::string& directory) const {
  std::string animals =
      "id,sire,dam,sex,birth_date,birth_range,birth_location,death_date,death_location,death_event,origin,rearing\n";
  std::vector<std::tuple<int, std::size_t, event>> events;
  for (std::size_t at = 0; at < animals_.size(); ++at) {
    animals += rowOf(animals_[at], at + 1);
    for (const event& one : animals_[at].events) events.emplace_back(one.date.day, at + 1, one);
  }
  std::stable_sort(events.begin(), events.end(),
                   [](const auto& a, const auto& b) { return std::get<0>(a) < std::get<0>(b); });
  std::string moves = "id,date,event,location\n";
  for (const auto& [day, number, one] : events) {
    moves += std::to_string(number) + "," + textOf(one.date) + "," + std::string(one.kind) + "," +
             std::string(one.place) + "\n";
  }
  return writeFile(directory + "/animals.csv", animals) && writeFile(directory + "/events.csv", moves) &&
         writeFile(directory + "/locations.csv", LOCATIONS);
}

}  // namespace

bool writeExampleStudbook(const std::string& directory, std::uint64_t seed) {
  Zoos zoos(seed);
  zoos.run();
  return zoos.write(directory);
}
