#include "spx/reports/report_writer.h"

#include "spx/project/project.h"

#include "tests/support/book_test.h"
#include "tests/support/well_formed.h"

namespace spx {
namespace {

class Reporting : public BookTest {
 protected:
  Reporting() { report.setFileName(at("report")); }

  std::string content() const { return contentOf(at("report.xml")); }

  ReportWriter report;
};

TEST_F(Reporting, WritesHeadBodyAndFooter) {
  Book = {dayFrom("1960-03-01"), 0, "Kob studbook", "", "tables"};
  ActiveProject.set("STUDBOOK_FORMAT", "TEXT", "CSV", "");
  user_field_list = {{"Chip", qs_lib::FIELD_TYPE::TEXT}};
  View.events = {MOVE_TYPE::DEATH};
  View.low_inbreeding = 0.03125;
  View.low_generation = 0;
  View.high_generation = -1;
  View.high_age = 365.25;
  View.addDeme(kew);
  Subspecies.add("kob");
  View.addTaxon("kob");
  View.addUserView(0, "A-17");
  View.addUserView(7, "no such field");
  qs_lib::basic_stat stat{18446744073709551615U, 0.4, 1.6, 2.0006, 2, 1.5, 2.5, 3};
  stat.significance_level = 0.01;
  stat.confidence_interval = {-1, 1e6};
  report.setTitle("Ages");
  report.setStyleSheet("a.xsl");
  ASSERT_TRUE(report.beginReport());
  report.writeView(true, true);
  View.low_generation = View.high_inbreeding = View.low_age = -0.5;
  report.writeView(false, false);
  report.writeUserView();
  View.user_filters.clear();
  report.writeUserView();
  report.writeFeature("kind", "value");
  report.writeStatResult("PLAIN", "1");
  report.writeBasicStat(stat, "age");
  report.writeFrequency(7, -1, 2.0 / 3);
  ASSERT_TRUE(report.endReport(1.5));
  EXPECT_NE(content().find("<TIMEUSED describe=\"Time used\">1.5000</TIMEUSED>"), std::string::npos);
  const std::string without_home = std::regex_replace(content(), std::regex(home), "HOME");
  expectFile(masked(without_home, qs_lib::getTodayAsISO()), "reports/expected/report.xml");
}

TEST_F(Reporting, StaysWellFormedWhateverNamesHold) {
  Book.name = Book.format = Book.db_system = HOSTILE;
  user_field_list = {{HOSTILE, qs_lib::FIELD_TYPE::TEXT}};
  View.addUserView(0, HOSTILE);
  View.addDeme(MetaPop.addMember("3", HOSTILE));
  Subspecies.add(HOSTILE);
  View.addTaxon(HOSTILE);
  report.setTitle(HOSTILE);
  report.setStyleSheet(HOSTILE);
  EXPECT_TRUE(report.beginReport());
  report.writeView(false, false);
  report.writeUserView();
  ASSERT_TRUE(report.endReport(NOT_A_NUMBER));
  expectWellFormed(at("report.xml"), content());
  EXPECT_NE(content().find(">" + HOSTILE_AS_XML + "</STUDBOOK>"), std::string::npos);
}

TEST_F(Reporting, ReportsWhenItCannotBeWritten) {
  std::filesystem::create_directory(at("directory.xml"));
  std::filesystem::create_symlink("/dev/full", at("full.xml"));
  const std::string no_footer = "Cannot re-open report file to write footer\n";
  EXPECT_FALSE(report.endReport(0)) << "nothing was begun";
  EXPECT_EQ(takeErrors(), no_footer);
  for (const std::string& file :
       {at("missing/report"), std::string("/proc/report"), at("directory.xml"), at("full.xml")}) {
    const bool is_full = file == at("full.xml");
    report.setFileName(file);
    EXPECT_EQ(report.beginReport(), is_full) << file;
    report.writeView(true, false);
    EXPECT_FALSE(report.endReport(0)) << file;
    EXPECT_EQ(takeErrors(), is_full ? "" : "Cannot create report file\n" + no_footer) << file;
  }
}

TEST_F(Reporting, IsDiscardedWithoutItsEnd) {
  writeContent(at("whole.xml"), "whole");
  {
    ReportWriter unfinished;
    unfinished.setFileName(at("whole.xml"));
    unfinished.setStaged(true);
    EXPECT_TRUE(unfinished.beginReport());
    unfinished.writeView(true, false);
  }
  EXPECT_EQ(contentOf(at("whole.xml")), "whole");
}

// A static writer is destroyed by exit(), in a forked child too; the copy in the child belongs to the parent.
TEST_F(Reporting, IsDiscardedAtExitAndLeftToItsParentByAForkedChild) {
  writeContent(at("whole.xml"), "whole");
  const auto begin = [this](ReportWriter& writer) {
    writer.setFileName(at("whole.xml"));
    writer.setStaged(true);
    EXPECT_TRUE(writer.beginReport());
    writer.writeView(true, false);
  };
  const auto exitAfterBeginning = [&begin] {
    static ReportWriter unfinished;
    begin(unfinished);
    std::exit(0);
  };
  EXPECT_EXIT(exitAfterBeginning(), testing::ExitedWithCode(0), "");
  EXPECT_EQ(contentOf(at("whole.xml")), "whole");
  begin(report);
  const auto endInChild = [this] {
    const bool is_ended = report.endReport(0);
    report.~ReportWriter();
    std::_Exit(is_ended ? 1 : 0);
  };
  EXPECT_EXIT(endInChild(), testing::ExitedWithCode(0), "");
  EXPECT_EQ(contentOf(at("whole.xml")), "whole");
  EXPECT_TRUE(report.endReport(0)) << "the parent's report is as it was";
  EXPECT_EQ(xmlFault(contentOf(at("whole.xml"))), "");
}

TEST_F(Reporting, TakesCallsInAnyOrder) {
  report.writeView(true, false);
  EXPECT_TRUE(report.beginReport());
  report.createTag("BODY", "1");
  EXPECT_TRUE(report.fileClose());
  report.createTag("LOST", "1");
  EXPECT_TRUE(report.endReport(0)) << "opened again for the footer";
  const std::string first = content();
  expectWellFormed(at("report.xml"), first);
  EXPECT_NE(first.find("BODY"), std::string::npos);
  EXPECT_EQ(first.find("LOST"), std::string::npos);
  EXPECT_FALSE(report.endReport(0)) << "twice";
  report.setStaged(true);
  EXPECT_TRUE(report.beginReport());
  report.openTag("LEFT_OPEN");
  report.setFileName(at("second.xml"));
  EXPECT_TRUE(report.beginReport());
  EXPECT_EQ(content(), first) << "half a report takes no place";
  EXPECT_TRUE(report.endReport(0));
  EXPECT_EQ(xmlFault(contentOf(at("second.xml"))), "");
}

}  // namespace
}  // namespace spx
