#pragma once

#include <string>
#include <vector>

#include "spx/core/master_data.h"
#include "spx/support/export.h"
#include "spx/support/log_file.h"
#include "spx/support/process_clock.h"

namespace spx {

/// The base of the analyses and exports. Call order: initialize(), and when that returned true the
/// analysis's own work and report(). The timer counts processor time from the end of construction.
class SPX_EXPORT Analysis {
 public:
  Analysis();
  Analysis(const Analysis&) = delete;
  Analysis& operator=(const Analysis&) = delete;
  virtual ~Analysis() = 0;

  /// Whether there is anything to analyse. Reports "No animals in list" and returns false for an
  /// empty store; an override repeats this test first.
  virtual bool initialize();

  // Steps that do nothing unless overridden.
  virtual void defaultView();   ///< sets up the view that the analysis needs
  virtual void defaultSet();    ///< default settings
  virtual void writeInfo();     ///< sections of the report
  virtual void writeResults();  ///< the results themselves
  virtual void writeTrends();   ///< what changes over the years

  /// Forms the name of the report file: directory, "/", stem and, if set, "-" and the sex of the
  /// view, without an extension. Then reports to the console when verbose, and to XML always. An
  /// empty stem is accepted.
  virtual void report();
  /// @{
  /// One of the two forms of the report; nothing unless overridden.
  virtual void reportXml();
  virtual void reportConsole();
  /// @}

  /// The title of the report; "Population analyses results" unless set.
  void setTitle(const std::string& title) { title_ = title; }
  /// Limits exports and parent tracing to some records; their own rules still apply. There is no limit at first.
  /// @param chosen  by record: whether to take it; records beyond its end are left out
  void chooseRecords(std::vector<bool> chosen);
  /// Whether chooseRecords() admits the record; true when it was never called.
  bool isChosen(position record) const { return !has_choice_ || (record < chosen_.size() && chosen_[record]); }

  /// The start of the report file's name; report() forms the rest.
  void setFileStem(const std::string& stem) { file_stem_ = stem; }
  /// A leading "~" is the user's home. "projects", relative to the working directory, unless set.
  void setReportDirectory(const std::string& directory) { report_directory_ = directory; }
  /// Whether report() appends the sex of the view to the file name; true unless set.
  void setAppendSex(bool append) { append_sex_ = append; }

  const std::string& title() const { return title_; }                       ///< shown on top of the report
  const std::string& fileStem() const { return file_stem_; }                ///< empty at first
  const std::string& reportDirectory() const { return report_directory_; }  ///< as it was set
  const std::string& reportFile() const { return report_file_; }            ///< formed by report()
  bool isAppendSex() const { return append_sex_; }                          ///< see setAppendSex()
  /// The log of the analysis; lives as long as the analysis.
  qs_lib::LogFile& log() { return log_; }

  /// The processor time between the last start and stop of the timer, in seconds; 0 before the first stop.
  double secondsUsed() const { return timer_.seconds(); }

  /// Room for the settings of a host's derived analyses, with their defaults. The library carries
  /// them and does not read them.
  struct host_settings {
    bool first_switch = false;
    int first_number = 1;
    int second_number = 3;
    std::string text;
    bool second_switch = true;
    bool third_switch = true;
    int third_number = 1;
  };
  host_settings settings;

 protected:
  /// Processor time; derived analyses restart and stop it around their work.
  qs_lib::process_timer timer_;

 private:
  qs_lib::LogFile log_;
  std::string title_ = "Population analyses results";
  std::string file_stem_;
  std::vector<bool> chosen_;
  bool has_choice_ = false;
  std::string report_directory_ = "projects";
  std::string report_file_;
  bool append_sex_ = true;
};

}  // namespace spx
