#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "spx/core/animal_data.h"
#include "spx/core/identifiers.h"
#include "spx/support/number_text.h"
#include "spx/views/data_filter.h"

#include "console/base/failure.h"
#include "console/base/natural_order.h"
#include "console/charts/animal_pedigree.h"
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

struct natural_less {
  bool operator()(const std::string& a, const std::string& b) const { return compareNaturally(a, b) < 0; }
};

class Cards {
 public:
  Cards(HtmlPage& page, report_context& context, const std::vector<position>& animals)
      : page_(page), context_(context), offspring_(offspringOf(animals)) {}

  void add(position at) {
    const master_data& animal = Animals.records[at];
    std::string text = "<div class=\"card\" id=\"" + anchor("animal", animal.stud_id) + "\"><h4><bdi>" +
                       html(animal.stud_id) + "</bdi></h4>\n<p>" + html(facts(animal)) + "</p>\n<p>Sire " +
                       linked(animal.sire_id) + ", dam " + linked(animal.dam_id) + "</p>\n";
    const std::vector<std::string>& young = offspring_.at(animal.stud_id);
    if (!young.empty()) {
      text += "<p>" + std::to_string(young.size()) + (young.size() == 1 ? " offspring:" : " offspring:");
      for (const std::string& id : young) {
        text += " " + linked(id);
      }
      text += "</p>\n";
    }
    page_.markup(text + "</div>\n");
    if (context_.cards) {
      addPedigree(animal.stud_id);
    }
  }

 private:
  std::string linked(const std::string& id) const {
    if (isPseudoIndividual(id) && !isPseudoFounder(id)) {
      return id == "WILD" ? "wild" : "unknown";
    }
    return offspring_.contains(id) ? link(anchor("animal", id), id) : "<bdi>" + html(id) + "</bdi>";
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
    return out + (animal.fcoef >= 0 ? ", F " + qs_lib::realToString(animal.fcoef, 4) : "");
  }

  void addPedigree(const std::string& id) {
    pedigree_extent extent;
    extent.ancestors = 3;
    try {
      page_.picture(drawPedigree(animalPedigree(id, extent)), "Three generations of ancestors of " + id);
    } catch (const Failure& failure) {
      context_.cards = false;
      context_.left_out.push_back(std::string("Pedigrees are left out: ") + failure.what());
    }
  }

  HtmlPage& page_;
  report_context& context_;
  offspring_map offspring_;
};

}  // namespace

void addAnimals(HtmlPage& page, report_context& context) {
  page.section("animals", "Animals by location");
  const GeneticBasis basis;
  std::map<std::string, std::vector<position>, natural_less> places;
  std::vector<position> all;
  for (const animal_number animal : basis.living()) {
    all.push_back(basis.studbook().record(animal));
    const std::string place = placeText(currentDeme(Animals.records[all.back()], View.monitor_date));
    places[place.empty() ? "Location not known" : place].push_back(all.back());
  }
  if (all.empty()) {
    page.paragraph("No animal of the view is alive and present on its day.");
    return;
  }
  Cards cards(page, context, all);
  for (auto& [place, animals] : places) {
    sortNaturally(animals);
    page.subheading(place + " (" + std::to_string(animals.size()) + ")");
    for (const position at : animals) {
      cards.add(at);
    }
  }
}

}  // namespace spx::console
