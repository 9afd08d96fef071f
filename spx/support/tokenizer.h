#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "spx/support/export.h"

namespace qs_lib {
/// Splits a text into tokens. Empty tokens at the start and between delimiters are kept; an empty
/// one after the last delimiter is dropped, and the empty text has no tokens.
class SPX_EXPORT Tokenizer {
 public:
  /// Splits the text at once; see split().
  Tokenizer(const std::string& text, const std::string& delimiters);

  /// Replaces the tokens by those of another text.
  /// @param delimiters  each of these characters separates tokens; when empty the text is one token
  void split(const std::string& text, const std::string& delimiters);

  /// Token number index, counted from 0; the empty text beyond the last.
  std::string getToken(std::size_t index) const;

  /// The number of tokens.
  std::size_t size() const { return tokens_.size(); }

  /// @{
  /// All tokens in order; valid until the next split(). A temporary tokenizer moves them out.
  const std::vector<std::string>& tokens() const& { return tokens_; }
  std::vector<std::string> tokens() && { return std::move(tokens_); }
  /// @}

 private:
  std::vector<std::string> tokens_;
};
}  // namespace qs_lib
