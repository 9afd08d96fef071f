#include "console/check/checked_records.h"

#include <algorithm>

#include "spx/core/identifiers.h"

#include "console/base/known_date.h"
#include "console/base/quoted_text.h"
#include "console/tables/loading_notes.h"

namespace spx::console {

CheckedRecords::CheckedRecords(const checked_studbook& book)
    : book_(book), index_(book.records), is_checked_(book.records.size()) {
  for (position record = 0; record < size(); ++record) {
    const master_data& animal = book_.records[record];
    is_checked_[record] = hasRow(animal) && !isPseudoIndividual(animal.stud_id);
    const position first = index_.isDuplicate(record) ? index_.find(animal.stud_id) : record;
    if (is_checked_[record] && first != record) {
      duplicates_.emplace_back(record, first);
    }
  }
  findParents();
}

void CheckedRecords::findParents() {
  parents_.reserve(size());
  for (position record = 0; record < size(); ++record) {
    if (record + RecordIndex::FETCH_FIRST < size()) {
      index_.fetchParents(record + RecordIndex::FETCH_FIRST);
      index_.fetchParentPlaces(record + RecordIndex::FETCH_NEXT);
    }
    const bool is_checked = is_checked_[record];
    parents_.emplace_back(is_checked ? checkedOrNone(index_.findSire(record)) : NONE,
                          is_checked ? checkedOrNone(index_.findDam(record)) : NONE);
  }
}

/// Of records with the same ID either all are checked or none: records without a row are added only for IDs that no
/// row has.
std::uint32_t CheckedRecords::checkedOrNone(position record) const {
  return record < size() && is_checked_[record] ? static_cast<std::uint32_t>(record) : NONE;
}

source_place CheckedRecords::placeOf(position record) const {
  return book_.place_of ? book_.place_of(record) : source_place{};
}

std::string CheckedRecords::placeText(position record) const {
  const source_place place = placeOf(record);
  return std::to_string(place.line == 0 ? record + 1 : place.line);
}

finding CheckedRecords::about(CHECK check, position record) const {
  finding found;
  found.check = check;
  found.animals.push_back(book_.records[record].stud_id);
  found.place = placeOf(record);
  return found;
}

finding CheckedRecords::aboutEvent(CHECK check, position record, const move_data& move) const {
  finding found = about(check, record);
  if (book_.place_of_event) {
    found.place = book_.place_of_event(record, static_cast<std::size_t>(&move - book_.records[record].moves.data()));
  }
  return found;
}

std::string CheckedRecords::nameText(std::string_view text) {
  const auto is_odd = [](char letter) {
    const auto byte = static_cast<unsigned char>(letter);
    return byte < 0x20 || byte == 0x7F || letter == '"' || letter == ',';
  };
  const bool is_plain = !text.empty() && text.front() != ' ' && text.back() != ' ' && text.size() <= 40 &&
                        std::none_of(text.begin(), text.end(), is_odd);
  return is_plain ? std::string(text) : quotedText(text);
}

bool laysEggs(const Biology& life_history) {
  return life_history.get("REPRODUCTIVE_SYSTEM").value ==
         std::to_string(static_cast<std::uint32_t>(REPRODUCTIVE_SYSTEM::OVIPAROUS));
}

std::optional<date_range> knownDays(const move_data& event) {
  if (event.date == 0 || event.accuracy >= DATE_ACCURACY::UNKNOWN) {
    return std::nullopt;
  }
  return rangeOf(event);
}

bool isExact(const std::optional<date_range>& days) {
  return days && days->first == days->last;
}

std::string dateText(const move_data& event) {
  return event.date == 0 ? "unknown" : dateText(known_date{event.date, event.accuracy, event.range});
}

std::string onDateText(const move_data& event) {
  const bool is_day = event.accuracy != DATE_ACCURACY::BY_MONTH && event.accuracy != DATE_ACCURACY::BY_YEAR;
  return (is_day ? "on " : "in ") + dateText(event);
}

std::string listText(const std::vector<std::string>& names) {
  constexpr std::size_t SHOWN = 5;
  const std::size_t shown = names.size() > SHOWN + 1 ? SHOWN : names.size();
  std::string text;
  for (std::size_t i = 0; i < shown; ++i) {
    const bool is_last = i + 1 == names.size();
    text += (i == 0 ? "" : is_last ? " and " : ", ") + names[i];
  }
  return shown == names.size() ? text : text + " and " + std::to_string(names.size() - shown) + " more";
}

}  // namespace spx::console
