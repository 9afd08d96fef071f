#include "spx/support/tokenizer.h"

#include <utility>

namespace qs_lib {
Tokenizer::Tokenizer(const std::string& text, const std::string& delimiters) {
  split(text, delimiters);
}

void Tokenizer::split(const std::string& text, const std::string& delimiters) {
  std::vector<std::string> tokens;  // the arguments may refer to the current tokens
  std::size_t start = 0;
  while (start < text.size()) {
    const std::size_t found = text.find_first_of(delimiters, start);
    const std::size_t end = found == std::string::npos ? text.size() : found;
    tokens.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  tokens_ = std::move(tokens);
}

std::string Tokenizer::getToken(std::size_t index) const {
  return index < tokens_.size() ? tokens_[index] : std::string();
}
}  // namespace qs_lib
