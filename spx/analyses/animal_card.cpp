// The card of one animal.
#include <cmath>

#include "spx/analyses/listings.h"
#include "spx/core/animal_data.h"
#include "spx/core/estimated_dates.h"
#include "spx/core/meta_population.h"
#include "spx/core/user_fields.h"
#include "spx/reports/view_labels.h"
#include "spx/support/console.h"
#include "spx/support/number_text.h"

namespace spx {
namespace {

std::string line(const char* label, const std::string& value) {
  return label + value + "\n";
}

std::string dateText(const move_data& event) {
  return formatEstDate(qs_lib::dayToMs(event.date), event.accuracy, event.range);
}

std::string placeText(const move_data& event) {
  return " at " + MetaPop.getMemberName(event.location);
}

template <typename T>
std::string computedText(T value, int decimals) {
  return std::isnan(value) ? "n/c" : qs_lib::realToString(value, decimals);
}

std::string eventsText(const master_data& animal) {
  std::string text = line("Birth      : ", dateText(animal.birth) + placeText(animal.birth)) +
                     line("Rearing    : ", getEnumName(animal.rearing));
  for (const move_data& move : animal.moves) {
    text += line("Event      : ", dateText(move) + " " + getEnumName(move.event) + placeText(move));
  }
  if (animal.death.date != 0) {
    const bool is_lost = animal.death.event == MOVE_TYPE::LOST_TO_FOLLOW_UP;
    text += line(is_lost ? "Lost       : " : "Death      : ", dateText(animal.death) + placeText(animal.death));
  }
  return text;
}

std::string computedValues(const master_data& animal) {
  return line("Inbreeding : ", computedText(animal.fcoef, 4)) +
         line("G-CITES    : ", computedText(animal.generation[G_CITES], 2)) +
         line("G-genetic  : ", computedText(animal.generation[G_GENETIC], 2)) +
         line("G-maternal : ", computedText(animal.generation[G_MATERNAL], 2)) +
         line("G-average  : ", computedText(animal.generation[G_AVERAGE], 2));
}

std::string userText(const master_data& animal) {
  std::string text = "User defined data\n";
  for (std::size_t field = 0; field < user_field_list.size(); ++field) {
    text += userFieldName(field) + ": " + (field < animal.user_data.size() ? animal.user_data[field] : "") + "\n";
  }
  return text;
}

}  // namespace

void listAnimal(const master_data& animal) {
  qs_lib::display(line("Animal#    : ", animal.stud_id) + line("Sire#      : ", animal.sire_id) +
                  line("Dam#       : ", animal.dam_id) + line("Taxon      : ", Subspecies.getName(animal.taxon)) +
                  line("Sex        : ", getEnumName(animal.sex)) +
                  line("Origin     : ", getEnumName(animal.birth_type)) + eventsText(animal) + computedValues(animal) +
                  line("Breeder    : ", truthText(animal.breeder)) + line("Selected   : ", truthText(animal.selected)) +
                  userText(animal));
  qs_lib::pauseKey();
}

bool listAnimal(const std::string& id) {
  const position found = Animals.findMaster(id);
  if (found == Animals.records.size()) {
    qs_lib::errorMessage("Cannot find animal.");
    return false;
  }
  listAnimal(Animals.records[found]);
  return true;
}

}  // namespace spx
