#include "console/edits/change_time.h"

#include <array>
#include <ctime>

#include "console/base/failure.h"
#include "console/base/quoted_text.h"

namespace spx::console {
namespace {

constexpr char JOURNAL_FORMAT[] = "%Y-%m-%dT%H:%M:%SZ";

/// Reads a text as a whole. @return whether it has that form
bool parse(const std::string& text, const char* format, std::tm& time) {
  time = {};
  time.tm_isdst = -1;
  const char* end = ::strptime(text.c_str(), format, &time);
  return end != nullptr && *end == '\0';
}

std::string format(const std::tm& time, const char* how) {
  std::array<char, 32> text{};
  return {text.data(), std::strftime(text.data(), text.size(), how, &time)};
}

std::string toJournal(std::time_t moment) {
  std::tm utc{};
  ::gmtime_r(&moment, &utc);
  return format(utc, JOURNAL_FORMAT);
}

}  // namespace

std::string journalTime(const std::string& option, const std::string& typed, bool end_of_day) {
  std::tm time{};
  if (parse(typed, JOURNAL_FORMAT, time)) {
    return toJournal(::timegm(&time));
  }
  if (parse(typed, "%Y-%m-%d", time)) {
    if (end_of_day) {
      time.tm_hour = 23;
      time.tm_min = 59;
      time.tm_sec = 59;
    }
    return toJournal(std::mktime(&time));
  }
  for (const char* form : {"%Y-%m-%d %H:%M", "%Y-%m-%dT%H:%M", "%Y-%m-%d %H:%M:%S", "%Y-%m-%dT%H:%M:%S"}) {
    if (parse(typed, form, time)) {
      return toJournal(std::mktime(&time));
    }
  }
  throw UsageError(option + ": " + quotedText(typed) + " is not a time; write 2026-03-01 or \"2026-03-01 14:30\"");
}

std::string localTime(const std::string& journal_time) {
  std::tm utc{};
  if (!parse(journal_time, JOURNAL_FORMAT, utc)) {
    return journal_time;
  }
  const std::time_t moment = ::timegm(&utc);
  std::tm local{};
  ::localtime_r(&moment, &local);
  return format(local, "%Y-%m-%d %H:%M");
}

}  // namespace spx::console
