#include "spx/views/predicates.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <regex>
#include <string_view>

#include "spx/core/animal_data.h"
#include "spx/core/pseudo_ids.h"
#include "spx/reports/user_fields.h"
#include "spx/support/console.h"
#include "spx/support/csv_report.h"
#include "spx/support/data_range.h"
#include "spx/views/data_filter.h"
#include "spx/views/identifier_matcher.h"
#include "spx/views/meta_population.h"

namespace spx {
namespace {

constexpr char pseudo_animal[] = R"(^(COLONY|GROUP|HERD|MULT(I)?|UNK(N|M|F)?|WILD|P)(.+)?)";
constexpr char multi_parent_id[] = R"(^(COLONY|GROUP|HERD|MULT(I)?)(.+?))";
constexpr char same_litter[] = R"(^(COLONY|GROUP|HERD|MULT(I)?|UNK(N|M|F)?|WILD|P)(\s+)?(\d+))";
constexpr char pseudo_founder[] = R"(^(P|WILD)(\s+)?(\d+))";

std::regex compiled(const char* pattern) {
  std::regex expression;
  expression.imbue(std::locale::classic());
  expression.assign(pattern, std::regex::ECMAScript | std::regex::icase);
  return expression;
}

const std::regex pseudoAnimal = compiled(pseudo_animal);
const std::regex multiParent = compiled(multi_parent_id);
const std::regex sameLitter = compiled(same_litter);
const std::regex pseudoFounder = compiled(pseudo_founder);

// The standard expressions recurse once per character.
constexpr std::size_t LONGEST_FOR_EXPRESSION = 256;

// What most parents without a record are called: a shared parent, or a founder with the number of
// its mate or of the parent that is missing. No expression has to be asked.
bool isUsualPseudo(std::string_view id) {
  return id == UNKNOWN_SIRE || id == UNKNOWN_DAM || id == WILD_PARENT || id == UNKNOWN_PARENT ||
         id == GROUP_PARENT ||
         (id.starts_with(PSEUDO_FOUNDER_PREFIX) &&
          id.find_first_not_of("0123456789", 1) == std::string_view::npos);
}

bool matches(const std::string& id, const std::regex& expression, IDENTIFIER_KIND kind) {
  // Most studbooks number their animals: the first letter settles nearly every question.
  if (!canBeginIdentifier(id, kind)) {
    return false;
  }
  if (kind == IDENTIFIER_KIND::PSEUDO_ANIMAL && isUsualPseudo(id)) {
    return true;
  }
  return id.size() <= LONGEST_FOR_EXPRESSION ? std::regex_match(id, expression)
                                             : matchesIdentifier(id, kind);
}

std::uint32_t daysBetween(qs_lib::day_number from, qs_lib::day_number to) {
  return to - from;
}

bool hasWildParents(const master_data& animal) {
  return animal.sire_id == WILD_PARENT && animal.dam_id == WILD_PARENT;
}

bool isWildLitterParent(const std::string& id) {
  return id.starts_with(WILD_PARENT) && isSameLitterParent(id);
}

bool hasDied(const master_data& animal) {
  return animal.death.date != 0 && animal.death.event != MOVE_TYPE::LOST_TO_FOLLOW_UP;
}

// The text of a field at a position; positions beyond the record's values read as empty.
std::string_view userValue(const master_data& animal, int field) {
  const auto at = static_cast<std::size_t>(field);
  return at < animal.user_data.size() ? animal.user_data[at] : std::string_view();
}

}  // namespace

bool isPseudoIndividual(const std::string& id) {
  return matches(id, pseudoAnimal, IDENTIFIER_KIND::PSEUDO_ANIMAL);
}

bool isMultiParent(const std::string& id) {
  return matches(id, multiParent, IDENTIFIER_KIND::MULTI_PARENT);
}

bool isSameLitterParent(const std::string& id) {
  return matches(id, sameLitter, IDENTIFIER_KIND::SAME_LITTER);
}

bool isPseudoFounder(const std::string& id) {
  return matches(id, pseudoFounder, IDENTIFIER_KIND::PSEUDO_FOUNDER);
}

bool isSameLitter(const master_data& animal, const std::string& dam, qs_lib::day_number date,
                  double days) {
  return animal.dam_id == dam && days >= static_cast<double>(daysBetween(date, animal.birth.date));
}

bool isLiving(const master_data& animal, qs_lib::day_number date) {
  return animal.birth.date <= date && daysBetween(1, animal.death.date) >= date;
}

bool isLivingBreeder(const master_data& animal, qs_lib::day_number date) {
  return animal.breeder && isLiving(animal, date);
}

bool isPotentialBreeder(const master_data& animal, qs_lib::day_number date) {
  return !animal.breeder && isLiving(animal, date);
}

bool isFounder(const master_data& animal) {
  return hasWildParents(animal) && animal.breeder && !isPseudoIndividual(animal.stud_id);
}

bool isLivingFounder(const master_data& animal, qs_lib::day_number date) {
  return isFounder(animal) && isLiving(animal, date);
}

bool isPotentialFounder(const master_data& animal, qs_lib::day_number date) {
  return hasWildParents(animal) && isPotentialBreeder(animal, date) &&
         !isPseudoIndividual(animal.stud_id);
}

bool isLostFounder(const master_data& animal, qs_lib::day_number date) {
  return hasWildParents(animal) && !animal.breeder && !isLiving(animal, date);
}

bool isWildLitter(const master_data& animal) {
  return isWildLitterParent(animal.sire_id) || isWildLitterParent(animal.dam_id);
}

bool isNeonatalDeath(const master_data& animal, double days) {
  return hasDied(animal) &&
         days >= static_cast<double>(daysBetween(animal.birth.date, animal.death.date));
}

bool isStillBirth(const master_data& animal) {
  return hasDied(animal) && animal.death.date == animal.birth.date;
}

bool isInFcoef(double value, double low, double high) {
  if (std::isnan(value) || (std::isnan(low) && std::isnan(high))) {
    return true;
  }
  // A lower bound of NaN with an upper bound fails here, as every comparison with NaN does.
  if (!(value >= low)) {
    return false;
  }
  return std::isnan(high) || high >= value;
}

bool isInGeneration(double value, double low, double high) {
  return isInFcoef(value, low, high);
}

bool isNotWorse(DATE_ACCURACY accuracy, DATE_ACCURACY worst) {
  return static_cast<std::int32_t>(accuracy) <= static_cast<std::int32_t>(worst);
}

bool isInSex(SEX sex, const std::vector<SEX>& list) {
  return std::any_of(list.begin(), list.end(),
                     [sex](SEX listed) { return listed == sex || listed == SEX::ALL; });
}

bool isOppositeSex(SEX a, SEX b) {
  return b == SEX::ALL || (a == SEX::MALE && b == SEX::FEMALE) ||
         (a == SEX::FEMALE && b == SEX::MALE);
}

bool isInDates(qs_lib::day_number date, qs_lib::DateSpan span, const std::string& brackets) {
  return qs_lib::DataRange<qs_lib::day_number>{span.start, span.end}.isInRange(date, brackets);
}

bool isInTaxonView(const master_data& animal) {
  return View.taxa.empty() ||
         std::find(View.taxa.begin(), View.taxa.end(), animal.taxon) != View.taxa.end();
}

bool isInUserView(const master_data& animal) {
  return user_field_list.empty() ||
         std::all_of(View.user_filters.begin(), View.user_filters.end(),
                     [&animal](const user_filter& filter) {
                       return userValue(animal, filter.field) == filter.value;
                     });
}

bool movedToDemeView(const master_data& animal, qs_lib::DateSpan span) {
  return std::any_of(animal.moves.begin(), animal.moves.end(), [span](const move_data& move) {
    return MetaPop.isMemberSelected(move.location) && isInDates(move.date, span, "[)");
  });
}

qs_lib::day_number arrivalDemeView(const master_data& animal) {
  for (const move_data& move : animal.moves) {
    if (MetaPop.isMemberSelected(move.location)) {
      return move.date;
    }
  }
  return 0;
}

qs_lib::day_number removalDemeView(const master_data& animal) {
  bool inside = MetaPop.isMemberSelected(animal.birth.location);
  for (const move_data& move : animal.moves) {
    const bool to_selected = MetaPop.isMemberSelected(move.location);
    if (inside && !to_selected) {
      return move.date;
    }
    inside = to_selected;
  }
  return 0;
}

namespace {

constexpr double NEONATAL_DAYS = 30;

// "Same itter dam" is misspelt in the header that readers of the table expect.
constexpr char FILTER_HEADER[] =
    "ID|Unknown sex|Pseudo|"
    "Sire|Wild sire|Unkn sire|Multi sire|Same litter sire|"
    "Dam|Wild dam|Unkn dam|Multi dam|Same itter dam|"
    "Breeder|Living breeder|Potential breeder|"
    "Founder|Potential founder|Pseudo founder|Lost founder|Wild litter|"
    "Neonatal death|Stillbirth|Alive|"
    "Deme view|Taxon view|User view|"
    "Print|Selected?";

void boolCell(qs_lib::CsvReport& table, bool value, bool more = true) {
  table.cell(std::string(value ? "true" : "false"), more);
}

void parentCells(qs_lib::CsvReport& table, const std::string& parent) {
  table.cell(parent, true);
  boolCell(table, parent == WILD_PARENT);
  boolCell(table, parent == UNKNOWN_PARENT);
  boolCell(table, isMultiParent(parent));
  boolCell(table, isSameLitterParent(parent));
}

void founderCells(qs_lib::CsvReport& table, const master_data& animal, qs_lib::day_number day) {
  boolCell(table, isFounder(animal));
  boolCell(table, isPotentialFounder(animal, day));
  boolCell(table, isPseudoFounder(animal.stud_id));
  boolCell(table, isLostFounder(animal, day));
  boolCell(table, isWildLitter(animal));
}

void filterRow(qs_lib::CsvReport& table, const master_data& animal, qs_lib::day_number day) {
  table.cell(animal.stud_id, true);
  boolCell(table, animal.sex == SEX::UNKNOWN);
  boolCell(table, isPseudoIndividual(animal.stud_id));
  parentCells(table, animal.sire_id);
  parentCells(table, animal.dam_id);
  boolCell(table, animal.breeder);
  boolCell(table, isLivingBreeder(animal, day));
  boolCell(table, isPotentialBreeder(animal, day));
  founderCells(table, animal, day);
  boolCell(table, isNeonatalDeath(animal, NEONATAL_DAYS));
  boolCell(table, isStillBirth(animal));
  boolCell(table, isLiving(animal, day));
  boolCell(table, MetaPop.isMemberSelected(currentDeme(animal, day)));
  boolCell(table, isInTaxonView(animal));
  boolCell(table, isInUserView(animal));
  boolCell(table, animal.print);
  boolCell(table, animal.selected, false);
  table.write("\n");
}

}  // namespace

bool TestFilters() {
  qs_lib::CsvReport table;
  table.setFileName("filter_test.csv");
  table.setStaged(true);
  qs_lib::display("Writing filter to: " + table.getFileName() + "\n");
  if (!table.fileOpen()) {
    return false;
  }
  table.writeHeader(FILTER_HEADER);
  for (const master_data& animal : Animals.records) {
    filterRow(table, animal, View.monitor_date);
  }
  return table.fileClose();
}

}  // namespace spx
