#include "spx/exports/export_pedigree.h"

#include <algorithm>
#include <limits>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "spx/core/animal_data.h"
#include "spx/core/meta_population.h"
#include "spx/exports/export_table.h"
#include "spx/support/csv_text.h"
#include "spx/support/fetch_ahead.h"
#include "spx/support/number_text.h"
#include "spx/views/predicates.h"

namespace spx {
namespace {

constexpr char HEADER[] = "ID|DAM|SIRE|SEX|BIRTHSITE|BIRTHDATE|DEATHDATE|CENSORED|F|G|TAXON|BREEDER";

constexpr char MISSING_PARENT[] = "NA";

const char* sexCode(SEX sex) {
  switch (sex) {
    case SEX::MALE:
      return "1";
    case SEX::FEMALE:
      return "2";
    default:
      return "3";
  }
}

// The texts of all days between the first and the last date of the records: a large studbook has
// more animals than days.
class DayTexts {
 public:
  void include(qs_lib::day_number day) {
    if (day != 0) {
      first_ = std::min(first_, day);
      last_ = std::max(last_, day);
    }
  }

  void make(std::size_t animals) {
    if (last_ < first_ || last_ - first_ >= animals) {
      return;
    }
    for (std::size_t day = first_; day <= last_; ++day) {
      texts_.push_back(textOf(static_cast<qs_lib::day_number>(day)));
    }
  }

  void append(std::string& rows, qs_lib::day_number day) const {
    const std::size_t place = std::size_t{day} - first_;
    rows += place < texts_.size() ? texts_[place] : textOf(day);
  }

 private:
  static std::string textOf(qs_lib::day_number day) { return qs_lib::julianToYYYYMMDD(qs_lib::dayToMs(day)); }

  qs_lib::day_number first_ = std::numeric_limits<qs_lib::day_number>::max();
  qs_lib::day_number last_ = 0;
  std::vector<std::string> texts_;
};

const char* censorCode(const master_data& animal) {
  return animal.death.date != 0 && animal.death.event != MOVE_TYPE::LOST_TO_FOLLOW_UP ? "1" : "0";
}

// NaN and numbers beyond int become the smallest int, which R reads as NA.
int wholeGenerations(float generation) {
  const double limit = -static_cast<double>(std::numeric_limits<int>::min());
  const auto value = static_cast<double>(generation);
  return value > -limit && value < limit ? static_cast<int>(value) : std::numeric_limits<int>::min();
}

// Writes the rows. The pedigree list may be in any order, and the records of a large studbook do not
// fit into a cache: the memory of a row is prefetched some rows ahead, and the pseudo individuals
// are found beforehand, in one pass over the records.
class PedigreeRows {
 public:
  explicit PedigreeRows(char separator) : separator_(separator) {
    is_pseudo_.reserve(Animals.records.size());
    for (const master_data& animal : Animals.records) {
      is_pseudo_.push_back(isPseudoIndividual(animal.stud_id));
      days_.include(animal.birth.date);
      days_.include(animal.death.date);
    }
    days_.make(Animals.records.size());
    for (const deme_level& level : MetaPop.levels()) {
      for (const deme_member& member : level.members) {
        // A deme may be in two levels when a level was added after it.
        const auto [site, is_new] = sites_.try_emplace(member.id);
        if (is_new) {
          qs_lib::appendCsvText(site->second, MetaPop.getMemberName(member.id), separator);
          site->second += separator;
        }
      }
    }
  }

  void write(qs_lib::CsvReport& table, const Analysis& analysis) const {
    constexpr std::size_t FETCH_AHEAD = 12;
    constexpr std::size_t BLOCK = std::size_t{256} * 1024;
    const std::vector<pedigree_record>& pedigree = Animals.pedigree;
    std::string rows;
    for (std::size_t i = 0; i < pedigree.size(); ++i) {
      if (i + FETCH_AHEAD < pedigree.size()) {
        fetch(pedigree[i + FETCH_AHEAD]);
      }
      if (!is_pseudo_[pedigree[i].animal] && analysis.isChosen(pedigree[i].animal)) {
        appendRow(rows, pedigree[i]);
      }
      if (rows.size() > BLOCK) {
        table.write(rows);
        rows.clear();
      }
    }
    table.write(rows);
  }

 private:
  static void fetch(const pedigree_record& entry) {
    const master_data& animal = Animals.records[entry.animal];
    qs_lib::fetchAhead(&animal.stud_id, &animal.taxon, &animal.birth.location, &animal.death, &animal.generation,
                       &Animals.records[entry.sire].stud_id, &Animals.records[entry.dam].stud_id);
  }

  void appendRow(std::string& rows, const pedigree_record& entry) const {
    const master_data& animal = Animals.records[entry.animal];
    appendText(rows, animal.stud_id);
    appendText(rows, parentCell(entry.dam));
    appendText(rows, parentCell(entry.sire));
    appendPlain(rows, sexCode(animal.sex));
    appendSite(rows, animal.birth.location);
    days_.append(rows, animal.birth.date);
    rows += separator_;
    days_.append(rows, animal.death.date);
    rows += separator_;
    appendPlain(rows, censorCode(animal));
    qs_lib::appendReal(rows, animal.fcoef, 5);
    rows += separator_;
    qs_lib::appendWhole(rows, wholeGenerations(animal.generation[G_MATERNAL]));
    rows += separator_;
    appendText(rows, Subspecies.getName(animal.taxon));
    rows += animal.breeder ? "yes\n" : "no\n";
  }

  // Digits and letters, which never need quotes.
  void appendPlain(std::string& rows, std::string_view text) const {
    rows += text;
    rows += separator_;
  }

  void appendText(std::string& rows, std::string_view text) const {
    qs_lib::appendCsvText(rows, text, separator_);
    rows += separator_;
  }

  void appendSite(std::string& rows, packed_deme location) const {
    const auto site = sites_.find(location);
    if (site == sites_.end()) {
      appendText(rows, MetaPop.getMemberName(location));
    } else {
      rows += site->second;
    }
  }

  std::string_view parentCell(position parent) const {
    return is_pseudo_[parent] ? MISSING_PARENT : std::string_view(Animals.records[parent].stud_id);
  }

  char separator_;
  std::vector<bool> is_pseudo_;  ///< by record
  DayTexts days_;
  std::unordered_map<packed_deme, std::string> sites_;  ///< the cells of their names
};

}  // namespace

ExportPedigree::ExportPedigree() {
  setFileStem("pedigree");
}

ExportPedigree::~ExportPedigree() = default;

bool ExportPedigree::exportToR() {
  return initialize() && writeExportTable(*this, timer_, [this](qs_lib::CsvReport& table) {
           table.writeHeader(HEADER);
           PedigreeRows(table.separator).write(table, *this);
         });
}

}  // namespace spx
