#pragma once

#include <cstddef>
#include <deque>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace spx::console {

/// A way of reading cells that are not taken literally, in the singular and the plural.
struct reading_kind {
  const char* one;
  const char* many;
};

/// How a column of a table was understood, with some of its values.
struct column_note {
  std::string title;
  std::string field;  ///< empty for a user-defined field
  std::vector<std::string> samples;
};

/// How one table was read.
class TableNotes {
 public:
  explicit TableNotes(std::string name) : name_(std::move(name)) {}

  const std::string& name() const { return name_; }

  /// Notes a fact about the table as a whole, such as its encoding, once. May be called from the
  /// thread that reads ahead.
  void add(const std::string& remark);

  /// Forgets everything.
  void clear();

  /// Counts a cell that was read as another text. The first of each kind is kept as the example.
  void count(const reading_kind& kind, std::string_view from, std::string_view to);

  /// Lines such as `animals.csv: 152 dates with the day first: "12/05/1998" is 1998-05-12`.
  std::string text() const;

  std::vector<column_note> columns;

 private:
  struct counted {
    const reading_kind* kind;
    std::size_t count;
    std::string example;
  };

  std::string name_;
  mutable std::mutex mutex_;  ///< guards the remarks
  std::vector<std::string> remarks_;
  std::vector<counted> counts_;
};

/// How the tables of a studbook were read, in the order in which they were opened.
class ReadingNotes {
 public:
  /// The notes of a table; the reference stays valid while this object lives.
  TableNotes& of(const std::string& name);

  const std::deque<TableNotes>& tables() const { return tables_; }
  std::string text() const;

 private:
  std::deque<TableNotes> tables_;
};

}  // namespace spx::console
