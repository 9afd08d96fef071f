#include "console/project/life_on_day.h"

#include "spx/core/estimated_dates.h"
#include "spx/views/data_filter.h"

#include "console/tables/loading_notes.h"

namespace spx::console {
namespace {

LIFE_STATUS statusAfter(STAY_END end) {
  switch (end) {
    case STAY_END::DIED:
      return LIFE_STATUS::DEAD;
    case STAY_END::LOST:
      return LIFE_STATUS::LOST;
    default:
      return LIFE_STATUS::LEFT;
  }
}

presence_settings settingsOf(qs_lib::day_number day) {
  presence_settings settings = presenceSettings(View);
  settings.use_neonate = true;
  settings.use_stillbirth = true;
  settings.emerge_days = 0;
  settings.until = day;
  return settings;
}

}  // namespace

const char* getText(LIFE_STATUS status) {
  constexpr const char* TEXTS[] = {"living", "dead", "lost", "left", "not there yet", "undated", "no record"};
  return TEXTS[static_cast<std::size_t>(status)];
}

LifeOnDay::LifeOnDay(const master_data& animal, qs_lib::day_number day) : animal_(animal), day_(day) {
  life_findings findings;
  followLife(animal, settingsOf(day), course_, findings);
}

LIFE_STATUS LifeOnDay::status() const {
  if (!hasRow(animal_)) {
    return LIFE_STATUS::NO_RECORD;
  }
  if (animal_.death.date != 0 && animal_.death.date <= day_) {
    return animal_.death.event == MOVE_TYPE::LOST_TO_FOLLOW_UP ? LIFE_STATUS::LOST : LIFE_STATUS::DEAD;
  }
  if (const stay* last = lastStay(); last != nullptr) {
    return isDuring(*last, day_) ? LIFE_STATUS::LIVING : statusAfter(last->end);
  }
  return course_.stays.empty() ? LIFE_STATUS::UNDATED : LIFE_STATUS::NOT_THERE;
}

std::optional<double> LifeOnDay::ageYears() const {
  const stay* last = lastStay();
  const bool has_left = last != nullptr && !isDuring(*last, day_);
  const bool has_ended = animal_.death.date != 0 && animal_.death.date <= day_;
  const qs_lib::day_number end = has_ended ? animal_.death.date : has_left ? last->to : day_;
  if (!hasRow(animal_) || animal_.birth.date == 0 || end < animal_.birth.date) {
    return std::nullopt;
  }
  return (end - animal_.birth.date) / DAYS_PER_YEAR;
}

packed_deme LifeOnDay::location() const {
  return status() == LIFE_STATUS::LIVING ? currentDeme(animal_, day_) : 0;
}

const stay* LifeOnDay::lastStay() const {
  const stay* last = nullptr;
  for (const stay& each : course_.stays) {
    last = each.from <= day_ ? &each : last;
  }
  return last;
}

}  // namespace spx::console
