// Writes an invented studbook of any size as CSV: the tables that the benchmarks read.
//
// Births are spread evenly over 60 years, whatever the number of animals, and written in order of
// birth. Animals born in the first three years are wild founders; all others have parents that are
// 2 to 15 years older and alive at the birth. The same number and seed give the same bytes with
// every compiler: all arithmetic is on integers over mt19937_64, and every draw is made whether or
// not the optional tables are wanted.
//
// Two other kinds test genetics, both closed after the founders, with all parents known. In a herd
// parents are 2 to 8 years old and anybody mates with anybody: after some twelve generations an animal
// has thousands of ancestors. In a registry one male in fifty is a sire. In the kind "wild" every other
// animal of the zoos has a wild sire, which gets an identity for each dam.
#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bench/dice.h"
#include "bench/example_studbook.h"

namespace {

constexpr std::int32_t DAYS_OF_YEAR = 365;
constexpr std::int32_t STUDBOOK_DAYS = 60 * DAYS_OF_YEAR;
constexpr std::int32_t FOUNDER_DAYS = 3 * DAYS_OF_YEAR;
constexpr std::int32_t YOUNGEST_PARENT = 2 * DAYS_OF_YEAR;
constexpr std::int32_t OLDEST_PARENT = 15 * DAYS_OF_YEAR;
constexpr std::int32_t OLDEST_OF_HERD = 8 * DAYS_OF_YEAR;
constexpr std::uint32_t MALES_PER_SIRE = 50;
constexpr std::int32_t LONGEST_LIFE = 20 * DAYS_OF_YEAR;
constexpr std::int32_t TRANSFER_AGE = DAYS_OF_YEAR;
constexpr auto FIRST_DAY = std::chrono::sys_days{std::chrono::January / 1 / 1960};

constexpr std::uint32_t REGIONS = 8;
constexpr std::uint32_t INSTITUTIONS = 10;
constexpr std::uint32_t ENCLOSURES = 4;
constexpr std::uint32_t DEMES = REGIONS * INSTITUTIONS * ENCLOSURES;

constexpr std::string_view TAXA[] = {"borealis", "australis", "insularis"};
constexpr std::string_view GROUPS[] = {"MULT2", "MULT3", "GROUP A", "HERD 1"};

enum class population { zoos, herd, registry, wild };

struct options {
  std::string example;  ///< a directory: write the example studbook there instead
  std::uint32_t animals = 0;
  population kind = population::zoos;
  std::uint64_t seed = 20240229;
  std::string events;
  std::string locations;
};

/// What later animals need to know about an animal, in twelve bytes.
struct animal {
  std::int32_t birth;  ///< days after FIRST_DAY
  std::int32_t death;  ///< likewise; beyond STUDBOOK_DAYS for the living
  std::uint16_t deme;  ///< counted from 0; where it lives once it is grown
  bool male;
  bool sexed;  ///< false: of unknown sex, and never a parent
};

/// One output file, written in large pieces.
class Table {
 public:
  explicit Table(std::FILE* file) : file_(file, &std::fclose) {}

  Table& operator<<(std::string_view text) {
    buffer_ += text;
    return *this;
  }
  Table& operator<<(std::uint32_t number) {
    char digits[16];
    buffer_.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
    return *this;
  }
  void endLine() {
    buffer_ += '\n';
    if (buffer_.size() > 1U << 20U) {
      write();
    }
  }
  /// Writes what is left and closes; false when anything of the table was lost.
  bool close() {
    write();
    return std::fclose(file_.release()) == 0 && complete_;
  }

 private:
  void write() {
    complete_ &= std::fwrite(buffer_.data(), 1, buffer_.size(), file_.get()) == buffer_.size();
    buffer_.clear();
  }

  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_;
  std::string buffer_;
  bool complete_ = true;
};

enum class precision { day, month, year };

struct day_text {
  std::int32_t day;
  precision exact = precision::day;
};

struct deme_text {
  std::uint32_t deme;
};

Table& writeTwoDigits(Table& table, unsigned number) {
  return table << (number < 10 ? "0" : "") << std::uint32_t{number};
}

Table& operator<<(Table& table, day_text text) {
  const std::chrono::year_month_day date{FIRST_DAY + std::chrono::days{text.day}};
  table << static_cast<std::uint32_t>(static_cast<int>(date.year()));
  if (text.exact == precision::year) {
    return table;
  }
  writeTwoDigits(table << "-", static_cast<unsigned>(date.month()));
  if (text.exact == precision::month) {
    return table;
  }
  return writeTwoDigits(table << "-", static_cast<unsigned>(date.day()));
}

Table& operator<<(Table& table, deme_text text) {
  const std::uint32_t institution = text.deme / ENCLOSURES;
  return table << institution / INSTITUTIONS + 1 << "." << institution % INSTITUTIONS + 1 << "."
               << text.deme % ENCLOSURES + 1;
}

/// Draws one animal after the other and writes each at once.
class Generator {
 public:
  Generator(const options& wanted, Table animals, std::optional<Table> events)
      : count_(wanted.animals),
        kind_(wanted.kind),
        dice_(wanted.seed),
        animals_(std::move(animals)),
        events_(std::move(events)) {
    population_.reserve(count_);
  }

  bool run() {
    animals_ << "id,sire,dam,sex,birth_date,birth_location,death_date,death_location,death_event,"
                "origin,rearing,taxon,microchip";
    animals_.endLine();
    if (events_) {
      *events_ << "id,date,event,location";
      events_->endLine();
    }
    for (std::uint32_t index = 0; index < count_; ++index) {
      addAnimal(index);
    }
    const bool events_written = !events_ || events_->close();
    return animals_.close() && events_written;
  }

 private:
  struct parent {
    enum { wild, unknown, missing, group, known } kind = wild;
    std::uint32_t number = 0;  ///< the ID, or the row of GROUPS
  };

  void addAnimal(std::uint32_t index) {
    animal born{};
    born.birth = static_cast<std::int32_t>(std::uint64_t{index} * STUDBOOK_DAYS / count_);
    const bool founder = born.birth < FOUNDER_DAYS;
    move(adults_, born.birth);
    move(sires_, born.birth);
    const parent sire = founder ? parent{} : drawParent(true, born.birth);
    const parent dam = founder ? parent{} : drawParent(false, born.birth);
    const std::uint32_t birth_deme = dam.kind == parent::known ? population_[dam.number - 1].deme : dice_.below(DEMES);
    born.male = dice_.below(2) == 0;
    born.sexed = !dice_.permille(10);
    born.death = born.birth + (founder ? dice_.between(YOUNGEST_PARENT, LONGEST_LIFE) : drawLife());
    born.deme = static_cast<std::uint16_t>(birth_deme);
    transfer(index, born);
    writeAnimal(index, born, sire, dam, birth_deme);
    population_.push_back(born);
    adults_.candidates.push_back(index);
    if (kind_ == population::registry && born.male && dice_.below(MALES_PER_SIRE) == 0) {
      sires_.candidates.push_back(index);
    }
  }

  /// The candidates from `first` up to, but not including, `last` are old and young enough to be
  /// parents on the current day.
  struct window {
    std::vector<std::uint32_t> candidates;  ///< indexes of animals, in order of birth
    std::uint32_t first = 0;
    std::uint32_t last = 0;
  };

  void move(window& of, std::int32_t day) const {
    const std::int32_t oldest = kind_ == population::herd ? OLDEST_OF_HERD : OLDEST_PARENT;
    const auto birth = [&](std::uint32_t place) { return population_[of.candidates[place]].birth; };
    while (of.last < of.candidates.size() && birth(of.last) <= day - YOUNGEST_PARENT) ++of.last;
    while (of.first < of.last && birth(of.first) < day - oldest) ++of.first;
  }

  parent drawParent(bool male, std::int32_t day) {
    if (kind_ == population::wild && male && dice_.below(2) == 0) {
      return {parent::wild};
    }
    if (kind_ == population::herd || kind_ == population::registry) {
      return drawKnownParent(male, day);
    }
    const std::uint32_t lot = dice_.below(1000);
    if (lot < 50) {
      return {parent::unknown};
    }
    // Odd numbers for dams, even ones for sires, so that no missing parent has both roles.
    if (lot < 70) {
      const std::uint32_t number = count_ + 1 + dice_.below(count_ / 50 + 2);
      return {parent::missing, number - number % 2 + (male ? 2 : 1)};
    }
    if (lot < 75) {
      return {parent::group, dice_.below(std::size(GROUPS))};
    }
    return drawKnownParent(male, day);
  }

  parent drawKnownParent(bool male, std::int32_t day) {
    constexpr int TRIES = 32;
    const window& from = male && kind_ == population::registry ? sires_ : adults_;
    for (int tried = 0; tried < TRIES && from.first < from.last; ++tried) {
      const std::uint32_t index = from.candidates[from.first + dice_.below(from.last - from.first)];
      const animal& candidate = population_[index];
      if (candidate.sexed && candidate.male == male && candidate.death > day) {
        return {parent::known, index + 1};
      }
    }
    return {parent::unknown};
  }

  /// One in seven dies in its first month, the others at any age.
  std::int32_t drawLife() { return dice_.permille(143) ? dice_.between(0, 30) : dice_.between(31, LONGEST_LIFE); }

  /// Every third animal moves once, in its second year: before it has offspring, which are born
  /// where their dam lives.
  void transfer(std::uint32_t index, animal& born) {
    const bool moves = dice_.below(3) == 0;
    const std::int32_t day = born.birth + TRANSFER_AGE + dice_.between(0, TRANSFER_AGE - 1);
    const std::uint32_t target = dice_.below(DEMES);
    if (!moves || day >= born.death || day >= STUDBOOK_DAYS) {
      return;
    }
    const bool same_place = target / ENCLOSURES == born.deme / ENCLOSURES;
    born.deme = static_cast<std::uint16_t>(target);
    if (!events_) {
      return;
    }
    *events_ << index + 1 << "," << day_text{day} << "," << (same_place ? "social in" : "arrival") << ","
             << deme_text{target};
    events_->endLine();
  }

  void writeParent(parent who) {
    switch (who.kind) {
      case parent::wild:
        animals_ << "WILD";
        break;
      case parent::unknown:
        animals_ << "UNK";
        break;
      case parent::group:
        animals_ << GROUPS[who.number];
        break;
      case parent::missing:
      case parent::known:
        animals_ << who.number;
        break;
    }
  }

  void writeAnimal(std::uint32_t index, const animal& born, parent sire, parent dam, std::uint32_t birth_deme) {
    const bool wild = sire.kind == parent::wild && dam.kind == parent::wild;
    animals_ << index + 1 << ",";
    writeParent(sire);
    animals_ << ",";
    writeParent(dam);
    animals_ << ","
             << (!born.sexed ? "unknown"
                 : born.male ? "male"
                             : "female")
             << "," << day_text{born.birth, drawPrecision()} << "," << deme_text{birth_deme} << ",";
    writeEnd(born);
    animals_ << (wild ? ",wild-born,parent," : dice_.permille(80) ? ",captive-born,hand," : ",captive-born,parent,");
    // Only the founders' taxon is given: the others take it from their parents.
    if (wild) {
      animals_ << TAXA[dice_.below(std::size(TAXA))];
    }
    animals_ << ",9850" << 100000000 + index;
    animals_.endLine();
  }

  /// A birth in twenty is known to the month only, one in fifty to the year.
  precision drawPrecision() {
    const std::uint32_t lot = dice_.below(100);
    return lot < 2 ? precision::year : lot < 7 ? precision::month : precision::day;
  }

  void writeEnd(const animal& born) {
    const bool lost = dice_.permille(20);
    if (born.death >= STUDBOOK_DAYS) {
      animals_ << ",,";
      return;
    }
    animals_ << day_text{born.death} << "," << deme_text{born.deme} << "," << (lost ? "lost-to-follow-up" : "death");
  }

  std::uint32_t count_;
  population kind_;
  Dice dice_;
  Table animals_;
  std::optional<Table> events_;
  std::vector<animal> population_;
  window adults_;
  window sires_;  ///< the few sires of a registry
};

bool writeLocations(Table table) {
  table << "level,id,name,latitude,longitude";
  table.endLine();
  for (std::uint32_t region = 1; region <= REGIONS; ++region) {
    table << "region," << region << ",Region " << region << ",,";
    table.endLine();
    for (std::uint32_t place = 1; place <= INSTITUTIONS; ++place) {
      table << "institution," << region << "." << place << ",Zoo " << region << "-" << place << "," << 30 + region * 3
            << ".25," << place * 4 << ".5";
      table.endLine();
      for (std::uint32_t pen = 1; pen <= ENCLOSURES; ++pen) {
        table << "enclosure," << region << "." << place << "." << pen << ",Pen " << region << "-" << place << "-" << pen
              << ",,";
        table.endLine();
      }
    }
  }
  return table.close();
}

template <typename Number>
bool parseNumber(std::string_view text, Number& number) {
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, number);
  return result.ec == std::errc() && result.ptr == end;
}

std::optional<options> parseArguments(int count, char** arguments) {
  constexpr std::uint32_t MOST_ANIMALS = 100'000'000;
  options wanted;
  for (int at = 1; at < count; ++at) {
    const std::string_view word = arguments[at];
    const bool has_value = at + 1 < count;
    if (word == "--seed" && has_value) {
      if (!parseNumber(arguments[++at], wanted.seed)) {
        return std::nullopt;
      }
    } else if (word == "--example" && has_value) {
      wanted.example = arguments[++at];
    } else if (word == "--events" && has_value) {
      wanted.events = arguments[++at];
    } else if (word == "--kind" && has_value) {
      const std::string_view kind = arguments[++at];
      if (kind != "herd" && kind != "registry" && kind != "wild") {
        return std::nullopt;
      }
      wanted.kind = kind == "herd" ? population::herd : kind == "registry" ? population::registry : population::wild;
    } else if (word == "--locations" && has_value) {
      wanted.locations = arguments[++at];
    } else if (wanted.animals != 0 || !parseNumber(word, wanted.animals)) {
      return std::nullopt;
    }
  }
  if (wanted.example.empty() ? wanted.animals == 0 || wanted.animals > MOST_ANIMALS : wanted.animals != 0) {
    return std::nullopt;
  }
  return wanted;
}

int fail(const std::string& file) {
  std::fprintf(stderr, "make_studbook: cannot write %s\n", file.c_str());
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  const std::optional<options> wanted = parseArguments(argc, argv);
  if (!wanted) {
    std::fputs(
        "Usage: make_studbook N [--kind herd|registry|wild] [--seed S] [--events FILE] [--locations FILE]\n"
        "       make_studbook --example DIR [--seed S]\n"
        "Writes the animals table of N animals (1 to 100000000) to standard output,\n"
        "or the tables of a studbook with a life history to a directory.\n",
        stderr);
    return 2;
  }
  if (!wanted->example.empty()) {
    return writeExampleStudbook(wanted->example, wanted->seed) ? 0 : fail("the tables in " + wanted->example);
  }
  if (!wanted->locations.empty()) {
    std::FILE* file = std::fopen(wanted->locations.c_str(), "wb");
    if (file == nullptr || !writeLocations(Table(file))) {
      return fail(wanted->locations);
    }
  }
  std::optional<Table> events;
  if (!wanted->events.empty()) {
    std::FILE* file = std::fopen(wanted->events.c_str(), "wb");
    if (file == nullptr) {
      return fail(wanted->events);
    }
    events.emplace(file);
  }
  return Generator(*wanted, Table(stdout), std::move(events)).run() ? 0 : fail("the tables");
}
