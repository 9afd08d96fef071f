// Events: against birth and end, today, and each other.
#include <string>
#include <vector>

#include "console/check/rules.h"
#include "console/check/whereabouts.h"

namespace spx::console {
namespace {

bool isEntry(MOVE_TYPE event) {
  return event == MOVE_TYPE::FROM_WILD || event == MOVE_TYPE::POPULATION_IN;
}

bool isDeparture(MOVE_TYPE event) {
  return event == MOVE_TYPE::RELEASED || event == MOVE_TYPE::POPULATION_OUT || event == MOVE_TYPE::SURPLUS ||
         event == MOVE_TYPE::LOST_TO_FOLLOW_UP;
}

class Events {
 public:
  Events(const CheckedRecords& records, std::vector<finding>& findings)
      : records_(records), findings_(findings), whereabouts_(records) {}

  void check() {
    for (position record = 0; record < records_.size(); ++record) {
      if (!records_.isChecked(record)) {
        continue;
      }
      for (const move_data& move : records_[record].moves) {
        checkDate(record, move);
      }
      checkStays(record);
    }
  }

 private:
  void checkDate(position record, const move_data& move) {
    const master_data& animal = records_[record];
    const auto when = knownDays(move);
    if (!when) {
      return;
    }
    const std::string event = getEnumName(move.event) + " " + onDateText(move);
    if (when->first > records_.book().today) {
      add(CHECK::FUTURE_DATE, record, move, {}, " has the event " + event + ", which is in the future",
          "Correct the year");
    }
    const auto birth = knownDays(animal.birth);
    if (birth && when->last < birth->first) {
      add(CHECK::EVENT_BEFORE_BIRTH, record, move, {"birth", dateText(animal.birth)},
          " was born " + dateText(animal.birth) + ", but has the event " + event, "Correct one of the dates");
    }
    const auto end = knownDays(animal.death);
    if (!end || when->first <= end->last) {
      return;
    }
    if (animal.death.event == MOVE_TYPE::LOST_TO_FOLLOW_UP) {
      add(CHECK::EVENT_AFTER_LOSS, record, move, {"death", dateText(animal.death)},
          " was lost to follow-up " + dateText(animal.death) + ", but has the event " + event,
          "Remove the loss if the animal was found again, or correct one of the dates");
    } else {
      add(CHECK::EVENT_AFTER_DEATH, record, move, {"death", dateText(animal.death)},
          " died " + dateText(animal.death) + ", but has the event " + event, "Correct one of the dates");
    }
  }

  void add(CHECK check, position record, const move_data& move, const std::pair<std::string, std::string>& compared,
           const std::string& tail, const char* suggestion) {
    finding found = records_.aboutEvent(check, record, move);
    if (!compared.first.empty()) {
      found.values.push_back(compared);
    }
    found.values.emplace_back("event", getEnumName(move.event));
    found.values.emplace_back("date", dateText(move));
    found.message = records_.name(record) + tail;
    found.suggestion = suggestion;
    findings_.push_back(found);
  }

  /// An animal that is present cannot arrive again, nor arrive at two locations on one day.
  void checkStays(position record) {
    const move_data* arrival = nullptr;  // the arrival since which it is present
    for (const move_data& move : records_[record].moves) {
      const auto when = knownDays(move);
      if (isDeparture(move.event)) {
        arrival = nullptr;
      }
      if (!when || !(isEntry(move.event) || move.event == MOVE_TYPE::ARRIVAL)) {
        continue;
      }
      if (arrival != nullptr) {
        comparePlaces(record, *arrival, move);
      }
      arrival = &move;
    }
  }

  void comparePlaces(position record, const move_data& earlier, const move_data& later) {
    const auto first = knownDays(earlier);
    const auto second = knownDays(later);
    const std::string where = whereabouts_.name(earlier.location);
    const std::string there = whereabouts_.name(later.location);
    finding found = records_.aboutEvent(CHECK::OVERLAPPING_STAYS, record, later);
    found.values = {{"places", where + ", " + there}, {"date", dateText(later)}};
    if (isExact(first) && isExact(second) && first->first == second->first &&
        whereabouts_.areApart(earlier.location, later.location)) {
      found.message =
          records_.name(record) + " arrived at " + where + " and at " + there + " on the same day, " + dateText(later);
      found.suggestion = "Correct one of the dates";
      findings_.push_back(found);
    } else if (isEntry(later.event) && first->last < second->first) {
      found.message = records_.name(record) + " has the event " + getEnumName(later.event) + " " + onDateText(later) +
                      ", but had been present since it came to " + where + " " + onDateText(earlier);
      found.suggestion = "Add the event by which it left, or correct the event";
      findings_.push_back(found);
    }
  }

  const CheckedRecords& records_;
  std::vector<finding>& findings_;
  Whereabouts whereabouts_;
};

}  // namespace

void checkEvents(const CheckedRecords& records, std::vector<finding>& findings) {
  Events(records, findings).check();
}

}  // namespace spx::console
