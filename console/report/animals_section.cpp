#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "spx/core/animal_data.h"
#include "spx/core/identifiers.h"
#include "spx/support/number_text.h"
#include "spx/views/data_filter.h"

#include "console/base/natural_order.h"
#include "console/output/animal_table.h"
#include "console/report/report_sections.h"
#include "console/results/genetic_basis.h"

namespace spx::console {
namespace {

/// The offspring of each animal that has a card, by ID.
using offspring_map = std::unordered_map<std::string, std::vector<std::string>>;

offspring_map offspringOf(const std::vector<position>& animals) {
  offspring_map offspring;
  for (const position at : animals) {
    offspring[Animals.records[at].stud_id];
  }
  for (const master_data& animal : Animals.records) {
    for (const std::string* parent : {&animal.sire_id, &animal.dam_id}) {
      const auto found = offspring.find(*parent);
      if (found != offspring.end()) {
        found->second.push_back(animal.stud_id);
      }
    }
  }
  return offspring;
}

/// The records by ID; the first one of a duplicate.
using record_map = std::unordered_map<std::string_view, const master_data*>;

record_map recordsById() {
  record_map records;
  for (const master_data& animal : Animals.records) {
    records.emplace(animal.stud_id, &animal);
  }
  return records;
}

std::string shownId(const std::string& id) {
  if (isPseudoIndividual(id) && !isPseudoFounder(id)) {
    return id == "WILD" ? "wild" : "unknown";
  }
  return id.empty() ? "unknown" : "<bdi>" + html(id) + "</bdi>";
}

/// Parents, grandparents and great-grandparents side by side, each sire above its dam.
class AncestorTable {
 public:
  explicit AncestorTable(const record_map& records) : records_(records) {}

  std::string markup(const master_data& animal) const {
    std::string out = "<table class=\"pedigree\" aria-label=\"Ancestors, sires above dams\">\n";
    for (std::size_t row = 0; row < ROWS; ++row) {
      out += "<tr>";
      for (std::size_t height = ROWS / 2; height > 0; height /= 2) {
        if (row % height == 0) {
          out += "<td" + (height > 1 ? " rowspan=\"" + std::to_string(height) + "\">" : std::string(">")) +
                 ancestor(animal, row, height) + "</td>";
        }
      }
      out += "</tr>\n";
    }
    return out + "</table>\n";
  }

 private:
  static constexpr std::size_t ROWS = 8;

  /// The ancestor whose cell begins in the row and spans `height` rows. At each step from the animal back, the upper
  /// half of the rows belongs to the sire.
  std::string ancestor(const master_data& animal, std::size_t row, std::size_t height) const {
    const master_data* child = &animal;
    for (std::size_t half = ROWS / 2;; half /= 2) {
      const std::string& parent = row / half % 2 == 0 ? child->sire_id : child->dam_id;
      const auto found = records_.find(parent);
      if (half == height) {
        return shownId(parent) + (found == records_.end() ? "" : year(*found->second));
      }
      if (found == records_.end() || isFromNowhere(*found->second)) {
        return "";
      }
      child = found->second;
    }
  }

  /// Whether nothing is known about its parents: a placeholder, or a wild mate.
  static bool isFromNowhere(const master_data& animal) {
    return isPseudoIndividual(animal.stud_id) && isPseudoIndividual(animal.sire_id) &&
           isPseudoIndividual(animal.dam_id);
  }

  static std::string year(const master_data& animal) {
    const bool is_known = animal.birth.date != 0 && !isPseudoIndividual(animal.stud_id);
    return is_known ? " " + qs_lib::julianToISO(qs_lib::dayToMs(animal.birth.date)).substr(0, 4) : "";
  }

  const record_map& records_;
};

class Cards {
 public:
  Cards(HtmlPage& page, const report_context& context, const std::vector<position>& animals)
      : page_(page), context_(context), offspring_(offspringOf(animals)), records_(recordsById()) {}

  void add(position at) {
    const master_data& animal = Animals.records[at];
    std::string text = "<div class=\"card\" id=\"" + anchor("animal", animal.stud_id) + "\"><h4><bdi>" +
                       html(animal.stud_id) + "</bdi></h4>\n<p>" + html(facts(animal)) + "</p>\n<p>Sire " +
                       linked(animal.sire_id) + ", dam " + linked(animal.dam_id) + "</p>\n";
    const std::vector<std::string>& young = offspring_.at(animal.stud_id);
    if (!young.empty()) {
      text += "<p>" + std::to_string(young.size()) + " offspring:";
      for (const std::string& id : young) {
        text += " " + linked(id);
      }
      text += "</p>\n";
    }
    page_.markup(text + (context_.cards ? AncestorTable(records_).markup(animal) : "") + "</div>\n");
  }

 private:
  std::string linked(const std::string& id) const {
    return offspring_.contains(id) ? link(anchor("animal", id), id) : shownId(id);
  }

  std::string facts(const master_data& animal) const {
    const auto date = [](const move_data& event) {
      return cellText(Cell(event), {.name = "", .title = "", .kind = COLUMN_KIND::DATE});
    };
    std::string out = getEnumName(animal.sex) + (animal.birth.date != 0 ? ", born " + date(animal.birth) : "");
    const double age = ageInYears(animal);
    if (age >= 0) {
      out += " (" + qs_lib::realToString(age, 1) + " years)";
    }
    return out + (animal.fcoef >= 0 ? ", F\u00a0" + qs_lib::realToString(animal.fcoef, 4) : "");
  }

  HtmlPage& page_;
  const report_context& context_;
  offspring_map offspring_;
  record_map records_;
};

}  // namespace

void addAnimals(HtmlPage& page, report_context& context) {
  page.section("animals", "Animals by location");
  const GeneticBasis basis(context.basis);
  std::map<std::string, std::vector<position>, natural_less> places;
  std::vector<position> all;
  for (const animal_number animal : basis.living()) {
    all.push_back(basis.studbook().record(animal));
    const std::string place = placeText(currentDeme(Animals.records[all.back()], View.monitor_date));
    places[place.empty() ? "Location not known" : place].push_back(all.back());
  }
  if (all.empty()) {
    page.paragraph("No animal of the view is alive and present on the day of the view.");
    return;
  }
  Cards cards(page, context, all);
  for (auto& [place, animals] : places) {
    sortNaturally(animals);
    page.subheading(place + ": " + std::to_string(animals.size()) + (animals.size() == 1 ? " animal" : " animals"));
    page.markup("<div class=\"cards\">\n");
    for (const position at : animals) {
      cards.add(at);
    }
    page.markup("</div>\n");
  }
}

}  // namespace spx::console
