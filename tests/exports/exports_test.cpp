#include <cmath>

#include "spx/exports/export_dattrf.h"
#include "spx/exports/export_field.h"
#include "spx/exports/export_pedigree.h"

#include "tests/support/book_test.h"

namespace spx {
namespace {

using Exports = BookTest;

template <class Export, bool (Export::*WRITE)()>
bool written(const std::string& directory) {
  Export analysis;
  analysis.setReportDirectory(directory);
  return (analysis.*WRITE)();
}

struct export_case {
  bool (*write)(const std::string& directory);
  std::vector<std::string> files;
};

const export_case EXPORTS[] = {{written<ExportPedigree, &ExportPedigree::exportToR>, {"pedigree.csv"}},
                               {written<ExportField, &ExportField::exportToR>, {"animal_data.csv"}},
                               {written<ExportDattrf, &ExportDattrf::exportData>, {"STUDBOOK.DAT", "STUDBOOK.TRF"}}};

TEST_F(Exports, CompareWithTheExpectedFiles) {
  drawFamily();
  Animals.records[5].stud_id = "123456789";
  Animals.records[5].fcoef = 0.125;
  Animals.records[5].birth.number = 18446744073709551615U;
  Animals.records[6].birth.number = 1234567890123;
  Animals.records[6].sex = SEX{99};
  Animals.records[7].death.date = Animals.records[7].birth.date - 1;
  Animals.records[7].fcoef = -HUGE_VAL;
  for (std::uint32_t accuracy = 0; accuracy < 9; ++accuracy) {
    Animals.records[accuracy].birth.accuracy = DATE_ACCURACY{accuracy};
  }
  Animals.records[10].birth.location = MetaPop.addMember("3", "a\tb|c \"d\"\n");
  View.start_date = 0;
  for (const auto& [write, files] : EXPORTS) {
    EXPECT_TRUE(write(home));
    for (const std::string& file : files) {
      expectFile(contentOf(at(file)), "exports/expected/" + file);
    }
    Animals.pedigree.clear();
    View.taxa = {Subspecies.add("nobody's")};
    EXPECT_TRUE(write(home));
    const std::string content = contentOf(at(files.back()));
    EXPECT_TRUE(content.empty() || content == "@\n" || content.ends_with("|BREEDER\n")) << content;
    View.taxa.clear();
  }
}

TEST_F(Exports, ADemeInTwoLevelsIsOneCell) {
  drawFamily();
  MetaPop = MetaPopulation();
  for (const char* name : {"First", "Second"}) {
    MetaPop.addLevel(name);
    Animals.records[10].birth.location = MetaPop.addMember("1.2.3", name);
  }
  ASSERT_TRUE(EXPORTS[0].write(home));
  const std::string table = contentOf(at("pedigree.csv"));
  EXPECT_TRUE(table.find("|Second|") != std::string::npos) << table;
  EXPECT_TRUE(table.find("|Second|Second|") == std::string::npos) << table;
}

TEST_F(Exports, CutGenerationsToWholeNumbers) {
  drawFamily();
  const float largest = 2147483520.0F;  // below 2 to the power of 31
  const float cases[] = {2.9F, -2.9F, -0.5F, largest, 2147483648.0F, -1e30F, HUGE_VALF, NAN};
  std::string shown;
  for (const float generation : cases) {
    Animals.records[7].generation[G_MATERNAL] = generation;
    ASSERT_TRUE(EXPORTS[0].write(home));
    const std::string table = contentOf(at("pedigree.csv"));
    const std::size_t begin = table.find("|0|0.06250|") + 11;
    shown += table.substr(begin, table.find('|', begin) - begin) + " ";
  }
  EXPECT_EQ(shown, "2 -2 0 2147483520 -2147483648 -2147483648 -2147483648 -2147483648 ");
}

TEST_F(Exports, TakeTheAnimalsOfTheView) {
  drawFamily();
  Animals.records[9].death.accuracy = DATE_ACCURACY{0xFFFFFFFF};  // -1 as a signed number
  const std::pair<void (*)(), const char*> cases[] = {
      {[] {}, "4 5 "},
      {[] { View.start_date = 0; }, "1 2 3 4 5 O'Hara #6 7 "},
      {[] { View.start_date = dayFrom("2003-01-01"); }, "4 5 "},
      {[] { View.start_date = dayFrom("2003-01-02"); }, "4 "},
      {[] { View.end_date = dayFrom("2003-01-01"); }, "5 "},
      {[] { View.end_date = dayFrom("2002-12-31"); }, ""},
      {[] { View.sex = SEX::FEMALE; }, "5 "},
      {[] { View.origin = BIRTH_TYPE::WILD_BORN; }, ""},
      {[] { View.addTaxon("kob"); }, ""},
      {[] { View.addUserView(1, "red"); }, ""},
      {[] { View.low_inbreeding = View.low_generation = 9; }, "4 5 "},
      {[] { View.start_date = 0, View.birth_accuracy = DATE_ACCURACY::BY_MONTH; }, "1 3 4 5 O'Hara #6 7 "},
      {[] { View.start_date = 0, View.death_accuracy = DATE_ACCURACY::DATE_RANGE; }, "1 2 3 4 5 O'Hara #6 "}};
  int row = 0;
  for (const auto& [set, exported] : cases) {
    resetView();
    set();
    EXPECT_EQ(idsOf([](const master_data& animal) { return ExportField().inAnalysis(animal); }), exported)
        << "row " << row++;
  }
}

TEST_F(Exports, NameTheFileThatFailedAndCountTheAnimals) {
  drawFamily();
  ExportDattrf pair;
  pair.setReportDirectory(home);
  for (const std::string& broken : {at("STUDBOOK.TRF"), at("STUDBOOK.DAT")}) {
    std::filesystem::create_symlink("/dev/full", broken);
    EXPECT_FALSE(pair.exportData());
    EXPECT_EQ(pair.failedFile(), broken);
    std::filesystem::remove(broken);
  }
  EXPECT_TRUE(pair.exportData());
  EXPECT_EQ(pair.failedFile(), "");
  ExportField fields;
  fields.setReportDirectory(home);
  EXPECT_TRUE(fields.exportToR());
  EXPECT_EQ(fields.exportedAnimals(), 2U);
  View.end_date = dayFrom("1999-01-01");
  EXPECT_TRUE(fields.exportToR());
  EXPECT_EQ(fields.exportedAnimals(), 0U);
}

TEST_F(Exports, FailSilentlyAndLeaveExistingFilesUnchanged) {
  for (const auto& [write, files] : EXPORTS) {
    Animals.clearStudbook();
    EXPECT_FALSE(write(home));
    EXPECT_EQ(takeErrors(), "No animals in list\n");
    drawFamily();
    EXPECT_FALSE(write("/proc"));
    EXPECT_FALSE(write(at("missing")));
    for (const std::string& broken : files) {
      for (const char* target : {"/dev/full", "/proc/self"}) {
        std::filesystem::remove_all(at("to"));
        std::filesystem::create_directory(at("to"));
        for (const std::string& file : files) {
          writeContent(at("to/" + file), "existing");
        }
        std::filesystem::remove(at("to/" + broken));
        std::filesystem::create_symlink(target, at("to/" + broken));
        EXPECT_FALSE(write(at("to"))) << broken << " " << target;
        for (const auto& entry : std::filesystem::directory_iterator(at("to"))) {
          EXPECT_TRUE(entry.is_symlink() || contentOf(entry.path()) == "existing") << entry;
        }
      }
    }
    EXPECT_EQ(takeErrors() + takeOutput(), "") << "the caller speaks";
  }
}

}  // namespace
}  // namespace spx
