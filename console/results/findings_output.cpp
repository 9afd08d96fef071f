#include "console/results/findings_output.h"

#include <ostream>
#include <string>

#include <nlohmann/json.hpp>

#include "spx/support/file_name.h"

#include "console/base/display_text.h"
#include "console/output/record_stream.h"

namespace spx::console {
namespace {

constexpr std::size_t SHOWN_OF_A_RULE = 10;

std::string counted(std::size_t count, const char* what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

/// Writes a text wrapped to the width; lines after the first are indented by two more columns.
void writeWrapped(std::ostream& out, const std::string& text, std::string indent, std::size_t width) {
  const std::vector<std::string> lines = wrapped(visibleText(text), width - indent.size() - 2);
  for (const std::string& line : lines) {
    out << indent << line << "\n";
    indent += &line == &lines.front() ? "  " : "";
  }
}

std::string placeText(const source_place& place) {
  if (place.line == 0) {
    return std::string();
  }
  const qs_lib::name_of_file parts = qs_lib::splitFileName(place.file);
  return parts.name + (parts.extension.empty() ? "" : "." + parts.extension) + ":" + std::to_string(place.line) + ": ";
}

/// A suggestion that repeats the one before is left out.
void listRule(std::ostream& out, const finding* first, std::size_t count, bool all, std::size_t width) {
  const check_code& rule = codeOf(first->check);
  out << rule.title << ": " << count << " (" << severityName(rule.severity) << ", " << rule.code << ")\n";
  const std::size_t shown = all || count <= SHOWN_OF_A_RULE ? count : SHOWN_OF_A_RULE;
  for (std::size_t i = 0; i < shown; ++i) {
    const finding& one = first[i];
    writeWrapped(out, placeText(one.place) + one.message, "  ", width);
    if (!one.suggestion.empty() && (i == 0 || one.suggestion != first[i - 1].suggestion)) {
      const bool is_question = one.suggestion.back() == '?';
      writeWrapped(out, "-> " + one.suggestion + (is_question ? "" : "."), "    ", width);
    }
  }
  if (shown < count) {
    out << "  ... and " << count - shown << " more; --all shows them\n";
  }
  out << "\n";
}

std::string joined(const std::vector<std::string>& parts) {
  std::string text;
  for (const std::string& part : parts) {
    text += (text.empty() ? "" : "; ") + part;
  }
  return text;
}

fact_record valuesOf(const finding& one, bool is_json) {
  fact_record facts = fact_record::object();
  std::vector<std::string> texts;
  for (const auto& [name, text] : one.values) {
    facts[name] = text;
    texts.push_back(name + "=" + text);
  }
  return is_json ? facts : fact_record(joined(texts));
}

fact_record cureOf(const finding& one, bool is_json) {
  fact_record facts = fact_record::array();
  std::vector<std::string> texts;
  for (const field_change& change : one.cure) {
    facts.push_back({{"animal", change.animal}, {"field", change.field}, {"value", change.value}});
    texts.push_back(change.animal + " " + change.field + "=" + change.value);
  }
  return is_json ? facts : fact_record(joined(texts));
}

fact_record factsOf(const finding& one, bool is_json) {
  fact_record facts;
  facts["severity"] = severityName(one.severity());
  facts["code"] = codeOf(one.check).code;
  facts["animals"] = is_json ? fact_record(one.animals) : fact_record(joined(one.animals));
  facts["file"] = one.place.file.empty() ? fact_record() : fact_record(one.place.file);
  facts["line"] = one.place.line == 0 ? fact_record() : fact_record(one.place.line);
  facts["message"] = one.message;
  facts["suggestion"] = one.suggestion.empty() ? fact_record() : fact_record(one.suggestion);
  facts["values"] = valuesOf(one, is_json);
  facts["fix"] = cureOf(one, is_json);
  return facts;
}

}  // namespace

finding_counts::finding_counts(const std::vector<finding>& findings) {
  for (const finding& one : findings) {
    const SEVERITY severity = one.severity();
    ++(severity == SEVERITY::ERROR ? errors : severity == SEVERITY::WARNING ? warnings : notes);
  }
}

std::string finding_counts::text() const {
  std::string text;
  const auto add = [&text](std::size_t count, const char* what) {
    if (count != 0) {
      text += (text.empty() ? "" : ", ") + counted(count, what);
    }
  };
  add(errors, "error");
  add(warnings, "warning");
  add(notes, "note");
  return text.empty() ? "nothing" : text;
}

void listFindings(std::ostream& out, const std::vector<finding>& findings, bool all, std::size_t animals,
                  std::size_t width) {
  for (std::size_t first = 0; first < findings.size();) {
    std::size_t end = first;
    while (end < findings.size() && findings[end].check == findings[first].check) {
      ++end;
    }
    listRule(out, &findings[first], end - first, all, width);
    first = end;
  }
  out << "Found " << finding_counts(findings).text() << " in " << counted(animals, "animal") << ".\n";
}

void writeFindings(std::ostream& out, OUTPUT_FORMAT format, const std::vector<finding>& findings) {
  const bool is_json = format == OUTPUT_FORMAT::JSON;
  RecordStream records(out, format, factsOf(finding(), is_json));
  for (const finding& one : findings) {
    records.write(factsOf(one, is_json));
  }
  records.end();
}

}  // namespace spx::console
