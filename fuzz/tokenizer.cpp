// Tokens, trimmed texts, numbers in texts and file names. The first line holds the delimiters, the
// second is the text to split, the third is a file name.
#include "spx/support/tokenizer.h"

#include <stdexcept>

#include "spx/support/file_name.h"
#include "spx/support/text.h"

#include "fuzz/fuzz_support.h"

namespace spx::fuzz {
namespace {

using qs_lib::Tokenizer;

/// Joining the tokens and the delimiters between them gives the text.
void tryTokens(const std::string& text, const std::string& delimiters) {
  const Tokenizer tokens(text, delimiters);
  std::string joined;
  for (const std::string& token : tokens.tokens()) {
    require(token.find_first_of(delimiters) == std::string::npos, "a delimiter in a token");
    joined += token;
    if (joined.size() < text.size()) {
      joined += text[joined.size()];
    }
  }
  require(joined == text, "tokens that are not the text");
  require(text.empty() == (tokens.size() == 0), "tokens of the empty text");
  require(tokens.getToken(tokens.size()).empty(), "a token beyond the last");
}

void tryTrimming(const std::string& text) {
  const std::string trimmed = qs_lib::allTrim(text);
  require(text.find(trimmed) != std::string::npos, "the trimmed text is not part of the text");
  require(qs_lib::allTrim(" \t" + trimmed + "\r\n") == trimmed, "trimming takes too much");
  require(qs_lib::stringToBool(text) == qs_lib::stringToBool(trimmed), "blanks change a truth");
}

void tryNumber(const std::string& text) {
  try {
    qs_lib::String(text).real();
  } catch (const std::out_of_range&) {
    // A number beyond a double raises an error that the caller handles.
  }
}

bool holds(const std::string& text, char character) {
  return text.find(character) != std::string::npos;
}

void tryFileName(const std::string& path) {
  const qs_lib::name_of_file parts = qs_lib::splitFileName(path);
  require(!holds(parts.name, '/') && !holds(parts.extension, '/'), "a file name with a directory");
  const std::string joined = qs_lib::createFileName(parts.directory, parts.name, parts.extension);
  const qs_lib::name_of_file again = qs_lib::splitFileName(joined);
  const bool is_absolute = path.starts_with("//") && parts.directory == "/";
  require(is_absolute || joined == path, "the parts of a path are not the path");
  require(again.name == parts.name && again.extension == parts.extension, "other parts again");
  require(!qs_lib::isPlainName(path) || qs_lib::splitFileName(path).directory.empty(),
          "a plain name leaves its directory");
}

}  // namespace
}  // namespace spx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace spx::fuzz;
  std::vector<std::string> lines = linesOf(asText(data, size));
  lines.resize(3);
  tryTokens(lines[1], lines[0]);
  tryTrimming(lines[1]);
  tryNumber(lines[1]);
  tryFileName(lines[2]);
  return 0;
}
