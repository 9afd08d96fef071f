#include "spx/reports/view_to_r.h"

#include <algorithm>

#include "spx/core/studbook.h"
#include "spx/reports/view_labels.h"
#include "spx/support/number_text.h"
#include "spx/views/data_filter.h"

namespace spx {
namespace {

constexpr int LABEL_WIDTH = 30;
constexpr int SEMICOLON = 59;

std::string comment(const std::string& label, const std::string& value) {
  return writeComment(label, value, LABEL_WIDTH);
}

std::string dateComment(const std::string& label, qs_lib::day_number day) {
  return comment(label, qs_lib::julianToISO(qs_lib::dayToMs(day)));
}

// The time of creation always includes the time of day.
std::string analysisDate() {
  const bool use_time = qs_lib::isUseTime();
  qs_lib::setUseTime(true);
  const std::string today = qs_lib::getTodayAsISO();
  qs_lib::setUseTime(use_time);
  return comment("Analysis date", today);
}

std::string settingsText() {
  return comment("Class width (days)", qs_lib::realToString(View.class_width, 6)) +
         comment("Left truncation", truthText(View.left_truncated)) +
         comment("Right censored", truthText(View.right_censored)) + comment("Prorating", truthText(View.prorating)) +
         comment("Handle unknown sex", getEnumName(View.handle_unknown)) +
         comment("Handle unknown parent", getEnumName(View.handle_parent));
}

std::string censusText() {
  return comment("Census interval", getEnumName(View.census_interval)) +
         comment("Census day", std::to_string(View.census_day)) +
         comment("Census month", qs_lib::realToString(static_cast<double>(View.census_month), 2));
}

std::string datesText(bool monitor, bool settings) {
  if (monitor) {
    return dateComment("Monitor date", View.monitor_date) + (settings ? settingsText() : "");
  }
  return dateComment("Start date", View.start_date) + dateComment("End date", View.end_date) +
         (settings ? settingsText() : censusText());
}

std::string boundsText() {
  std::string text;
  for (const labelled_text& bound : viewBounds("Upper generation number")) {
    text += comment(bound.label, bound.text);
  }
  return text;
}

}  // namespace

std::string writeComment(const std::string& label, const std::string& value, int width) {
  const auto wanted = static_cast<std::size_t>(width < 0 ? 0 : width);
  const std::size_t padding = label.size() < wanted ? wanted - label.size() : 0;
  std::string line = "# " + label + std::string(padding, ' ') + ": " + value;
  // A name with a line break would end the comment and run as a command.
  std::replace(line.begin(), line.end(), '\n', ' ');
  std::replace(line.begin(), line.end(), '\r', ' ');
  return line + "\n";
}

std::string viewToR(bool monitor, bool settings) {
  return "###\n" + comment("Studbook", Book.name) + analysisDate() +
         comment("Subspecies", View.createTaxonString(SEMICOLON)) + comment("Sex", getEnumName(View.sex)) +
         comment("Events", getEnumName(MOVE_TYPE::ALL)) + datesText(monitor, settings) +
         comment("Birth date accuracy", getEnumName(View.birth_accuracy)) +
         comment("Death date accuracy", getEnumName(View.death_accuracy)) +
         comment("Event date accuracy", getEnumName(View.event_accuracy)) +
         comment("Origin", getEnumName(View.origin)) + comment("Rearing", getEnumName(View.rearing)) + boundsText() +
         comment("Include neonates", truthText(View.use_neonate)) +
         comment("Include stillbirths", truthText(View.use_stillbirth)) +
         comment("Population view", View.createDemeString(false, SEMICOLON)) + "###\n";
}

}  // namespace spx
