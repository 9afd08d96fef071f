#include "console/tables/event_cells.h"

#include "console/tables/date_reading.h"
#include "console/tables/value_text.h"

namespace spx::console {
namespace {

DATE_ACCURACY accuracyOf(FieldTable& table, const event_fields& fields, const move_data& event, DATE_ACCURACY by_form) {
  if (!isMissing(table[fields.accuracy])) {
    return table.read(fields.accuracy, parseAccuracy,
                      "accuracy of a date (accurate, by day, by week, by month, by year, date range, unknown)");
  }
  return event.date != 0 && event.range != 0 ? DATE_ACCURACY::DATE_RANGE : by_form;
}

dated_text readDateCell(FieldTable& table, std::size_t field) {
  const auto date = parseDate(table[field]);
  if (!date) {
    table.addFault(field, dateFault(table[field]));
  }
  return date.value_or(dated_text{});
}

}  // namespace

void readEventCells(FieldTable& table, const event_fields& fields, LocationRegistry& locations, move_data& event) {
  const dated_text date = readDateCell(table, fields.date);
  event.date = date.day;
  event.range = isMissing(table[fields.range]) ? date.range : table.read(fields.range, parseDays, "number of days");
  event.accuracy = accuracyOf(table, fields, event, date.accuracy);
  const std::string_view location = table[fields.location];
  if (isUnknownId(location)) {
    return;
  }
  std::string reason;
  const place where = locations.find(location, reason);
  if (where.number == 0) {
    table.addFault(fields.location, reason);
  }
  event.location = where.deme;
  event.number = where.number;
}

}  // namespace spx::console
