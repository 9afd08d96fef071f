// The listing of the settings of a view.
#include "spx/support/console.h"
#include "spx/support/number_text.h"
#include "spx/support/text.h"
#include "spx/views/data_filter.h"

namespace spx {
namespace {

std::string line(const std::string& label, const std::string& value) {
  return label + value + "\n";
}

std::string line(const std::string& label, bool value) {
  return line(label, std::string(value ? "true" : "false"));
}

std::string dateLine(const std::string& label, qs_lib::day_number day) {
  return line(label, qs_lib::julianToISO(qs_lib::dayToMs(day)));
}

std::string rangeLine(const std::string& label, double low, double high) {
  return line(label, qs_lib::defaultReal(low) + " - " + qs_lib::defaultReal(high));
}

std::string monthName(int month) {
  return month < 1 || month > 12 ? std::string() : qs_lib::getMonthName(static_cast<std::uint16_t>(month), true);
}

std::string censusText(const DataFilter& view) {
  return line("Census interval   : ", getEnumName(view.census_interval) + " [" +
                                          std::to_string(static_cast<unsigned>(view.census_interval)) + "]") +
         line("Census day        : ", std::to_string(view.census_day)) +
         line("Census month      : ", monthName(view.census_month)) +
         line("Class width       : ", qs_lib::defaultReal(view.class_width)) +
         line("Number of classes : ", std::to_string(view.number_of_classes)) +
         line("Left truncated    : ", view.left_truncated) + line("Right censored    : ", view.right_censored) +
         line("Prorating         : ", view.prorating) + line("Same sex          : ", view.same_sex);
}

std::string selectionText(const DataFilter& view) {
  return line("Birth accuracy    : ", getEnumName(view.birth_accuracy)) +
         line("Death accuracy    : ", getEnumName(view.death_accuracy)) +
         line("Event accuracy    : ", getEnumName(view.event_accuracy)) +
         line("Origin            : ", getEnumName(view.origin)) + line("Include neonates? : ", view.use_neonate) +
         line("Use den emerge    : ", view.use_emerge) +
         rangeLine("Generations       : ", view.low_generation, view.high_generation) +
         rangeLine("Inbreeding        : ", view.low_inbreeding, view.high_inbreeding) +
         rangeLine("Age group         : ", view.low_age, view.high_age) +
         line("Generic parents?  : ", view.generic_parents) +
         line("Unknown parent    : ", getEnumName(view.handle_parent)) +
         line("Sex  group        : ",
              getEnumName(view.sex) + " - Handle unknown : " + getEnumName(view.handle_unknown)) +
         line("Contraception     : ", getEnumName(view.contraception));
}

}  // namespace

void DataFilter::listView() const {
  const std::string rule = qs_lib::replicateChar('-', 70) + "\n";
  const std::string id = filter_id == 0 ? "n/a" : std::to_string(filter_id);
  qs_lib::display(rule + "View and analyses settings\n" + rule + line("Filter ID         : ", id) +
                  dateLine("Start date        : ", start_date) + dateLine("End date          : ", end_date) +
                  dateLine("Monitor date      : ", monitor_date) + censusText(*this) + selectionText(*this) +
                  line("Locations         : ", demes.empty() ? std::string("all") : createDemeString(false, ';')) +
                  line("Subspecies        : ", createTaxonString(';')));
}

}  // namespace spx
