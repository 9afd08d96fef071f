#include "console/results/demography_notes.h"

#include <algorithm>

#include "spx/core/animal_data.h"
#include "spx/core/enumerations.h"
#include "spx/core/estimated_dates.h"
#include "spx/core/meta_population.h"
#include "spx/core/sub_taxa.h"
#include "spx/project/biology.h"
#include "spx/support/julian_date.h"
#include "spx/views/data_filter.h"

#include "console/project/view_settings.h"

namespace spx::console {
namespace {

void addWords(std::string& text, const std::string& words) {
  text += (text.empty() ? "" : ", ") + words;
}

// A date known by year or by month counts as the end of that time; otherwise animals born in the last year would not
// be there yet.
qs_lib::day_number lastDayOf(const move_data& event) {
  const bool is_rough = event.accuracy == DATE_ACCURACY::BY_YEAR || event.accuracy == DATE_ACCURACY::BY_MONTH;
  return is_rough && event.date != 0 ? static_cast<qs_lib::day_number>(rangeOf(event).last) : event.date;
}

qs_lib::day_number lastDayOfRecords() {
  qs_lib::day_number last = 0;
  for (const master_data& animal : Animals.records) {
    last = std::max({last, lastDayOf(animal.birth), lastDayOf(animal.death)});
    for (const move_data& move : animal.moves) last = std::max(last, lastDayOf(move));
  }
  return last;
}

}  // namespace

std::string dayText(qs_lib::day_number day) {
  return qs_lib::julianToISO(qs_lib::dayToMs(day));
}

time_unit timeUnit(const std::string& name) {
  return name == "days" ? time_unit{1, 0, "days"} : time_unit{DAYS_PER_YEAR, 2, "years"};
}

std::string whoText() {
  std::string text;
  for (const packed_deme deme : View.demes) addWords(text, MetaPop.getMemberName(deme));
  for (const taxon_handle taxon : View.taxa) addWords(text, Subspecies.getName(taxon));
  if (View.sex != SEX::ALL) addWords(text, getEnumName(View.sex) + (View.sex <= SEX::MALE ? "s" : " sex"));
  if (View.origin != BIRTH_TYPE::ALL) addWords(text, getEnumName(View.origin));
  if (View.rearing != REARING::ALL) addWords(text, "reared by " + getEnumName(View.rearing));
  return text.empty() ? "all animals" : text;
}

std::string viewText() {
  std::string text = whoText();
  constexpr qs_lib::day_number YEAR_1800 = 2378497;
  if (View.start_date > YEAR_1800) addWords(text, "from " + dayText(View.start_date));
  return text + ", until " + dayText(View.end_date);
}

std::string counted(std::size_t number, const std::string& noun) {
  return std::to_string(number) + " " + noun + (number == 1 ? "" : "s");
}

void endWithStudbook() {
  const qs_lib::day_number last = lastDayOfRecords();
  if (last == 0) return;
  const open_dates open = openDates();
  if (open.until) View.end_date = std::min(View.end_date, last);
  if (open.on) View.monitor_date = std::min(View.monitor_date, last);
}

void addDeathNote(Table& table, double deaths) {
  if (deaths > 0) return;
  table.notes.push_back("No death is recorded: every animal counts as alive. Survival and growth are too high.");
}

double gestationDays() {
  const double days = LifeHistory.getGestation();
  return days > 0 ? days : 0;
}

std::string countNote(std::size_t in_view, const left_out_counts& left_out) {
  const std::string line =
      std::to_string(in_view - left_out.total()) + " of " + counted(in_view, "animal") + " counted";
  std::string reasons;
  for (std::size_t reason = 0; reason < left_out.counts.size(); ++reason) {
    if (left_out.counts[reason] == 0) continue;
    addWords(reasons, std::to_string(left_out.counts[reason]) + " " + getText(static_cast<LEFT_OUT>(reason)));
  }
  return line + (reasons.empty() ? "." : "; left out: " + reasons + ".");
}

left_out_counts leftOutBetween(const Presence& presence, qs_lib::day_number first, qs_lib::day_number last) {
  left_out_counts left_out = presence.left_out;
  for (const Presence::life& life : presence.lives()) {
    const auto stays = presence.stays(life);
    const bool is_counted = stays.front().from <= last && stays.back().to >= first && first <= last;
    left_out[LEFT_OUT::OUTSIDE_PERIOD] += !is_counted;
  }
  return left_out;
}

void addCountNotes(Table& table, std::size_t in_view, const left_out_counts& left_out, const life_findings& findings) {
  table.notes.push_back(countNote(in_view, left_out));
  std::string odd;
  const auto add = [&odd](std::size_t number, const char* noun, const char* done) {
    if (number != 0) addWords(odd, counted(number, noun) + " " + done);
  };
  add(findings.undated_events, "event", "without a date ignored");
  add(findings.events_before_birth, "event", "before birth ignored");
  add(findings.events_after_end, "event", "after death ignored");
  add(findings.departures_while_away, "departure", "of animals already gone ignored");
  add(findings.events_while_away, "other event", "of animals already gone ignored");
  add(findings.events_out_of_order, "animal", "with events out of order sorted");
  add(findings.entries_while_present, "entry of an animal already present", "treated as a change of place");
  add(findings.assumed_entries, "wild-born animal", "without a recorded entry counted from birth");
  add(findings.presumed_lost, "animal", "older than the longest life treated as lost");
  if (!odd.empty()) table.notes.push_back("Events: " + odd + ".");
  if (View.use_emerge && !(presenceSettings(View).emerge_days > 0)) {
    table.notes.push_back(
        "It is not set when the young leave the den: all count from birth (spx life-history set den-emerge=DAYS).");
  }
}

}  // namespace spx::console
