#include "console/output/output_format.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "console/base/failure.h"
#include "console/base/nearest_word.h"
#include "console/base/quoted_text.h"

namespace spx::console {
namespace {

OUTPUT_FORMAT parseFormat(const std::string& text) {
  const std::vector<std::string> names = {"text", "csv", "json"};  // in the order of the values
  for (std::size_t which = 0; which < names.size(); ++which) {
    if (names[which] == text) {
      return static_cast<OUTPUT_FORMAT>(which);
    }
  }
  throw UsageError("--format: " + quotedText(text) + " must be one of: text, csv, json" + suggestion(text, names));
}

std::string endingOf(const std::string& file) {
  std::string ending = std::filesystem::path(file).extension().string();
  std::transform(ending.begin(), ending.end(), ending.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
  return ending;
}

}  // namespace

bool isXlsx(const std::string& file) {
  return endingOf(file) == ".xlsx";
}

OUTPUT_FORMAT formatOfFile(OUTPUT_FORMAT asked, const std::string& file, bool offers_xlsx) {
  static constexpr const char* OTHERS[] = {".xlsx", ".ods",  ".xls", ".xlsm", ".doc", ".docx", ".odt",
                                           ".pdf",  ".html", ".htm", ".svg",  ".png", ".xml"};
  const std::string ending = endingOf(file);
  const auto refuse = [&](const std::string& reason) { throw UsageError("-o " + file + ": " + reason); };
  const bool is_workbook = offers_xlsx && ending == ".xlsx";
  if (!is_workbook && std::find(std::begin(OTHERS), std::end(OTHERS), ending) != std::end(OTHERS)) {
    refuse("this command cannot write " + ending + " files; give the file the ending .txt, .csv" +
           (offers_xlsx ? ", .json or .xlsx" : " or .json"));
  }
  if (asked == OUTPUT_FORMAT::TEXT) {
    return ending == ".csv" ? OUTPUT_FORMAT::CSV : ending == ".json" ? OUTPUT_FORMAT::JSON : OUTPUT_FORMAT::TEXT;
  }
  if (is_workbook || ending == (asked == OUTPUT_FORMAT::CSV ? ".json" : ".csv")) {
    refuse(std::string("--format ") + (asked == OUTPUT_FORMAT::CSV ? "csv" : "json") + " asks for something else");
  }
  return asked;
}

void addFormatOption(CLI::App& app, OUTPUT_FORMAT& format) {
  app.add_option_function<std::string>(
         "--format", [&format](const std::string& text) { format = parseFormat(text); },
         "How to write the result: for people, or for scripts (default: text)")
      ->type_name("text|csv|json");
}

}  // namespace spx::console
