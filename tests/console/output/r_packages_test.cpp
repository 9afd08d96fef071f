#include "console/output/r_packages.h"

#include <algorithm>
#include <sstream>

#include "spx/core/animal_data.h"

#include "console/base/failure.h"
#include "tests/console/console_fixture.h"

namespace spx::console {
namespace {

class RPackagesTest : public ConsoleTest {
 protected:
  /// The files that a package gets for a studbook with all animals flagged, without the script.
  std::string exported(const std::string& animals, const std::string& package) {
    studbook_files files;
    files.animals = table("a.csv", animals);
    loadStudbook(files);
    for (master_data& animal : Animals.records) {
      animal.print = animal.stud_id == "4" || animal.stud_id == "x y";
    }
    std::string text;
    try {
      for (const package_file& file : packageFiles(package)) {
        text += file.name.ends_with(".R") ? "" : file.name + "\n" + file.content;
      }
    } catch (const Failure& failure) {
      return failure.what();
    }
    return text;
  }
};

// 3 with an unknown dam, 4 with its ancestors, and 5, which is not exported; offspring come first.
constexpr char FAMILY[] =
    "id,sire,dam,sex,birth_date,death_date\n4,3,2,f,2004,\n3,1,,u,2003,2009\n2,,,f,,\n1,,,m,1999,\n5,1,2,m,,\n";

TEST_F(RPackagesTest, EachPackageGetsItsForm) {
  const struct {
    const char* package;
    const char* expected;
  } cases[] = {
      {"kinship2",
       "kinship2.csv\nid,dadid,momid,sex,status\n2,,,2,0\n1,,,1,0\ndam_of_3,,,2,0\n3,1,dam_of_3,1,1\n4,3,2,2,0\n"},
      {"nadiv", "nadiv.csv\nID,Dam,Sire,Sex\n2,,,F\n1,,,M\n3,,1,\n4,2,3,F\n"},
      {"optiSel",
       "optiSel.csv\nIndiv,Sire,Dam,Sex,Breed,Born\n2,,,female,generic,\n1,,,male,generic,1999\n"
       "3,1,,,generic,2003\n4,3,2,female,generic,2004\n"},
      {"pedigreemm", "pedigreemm.csv\nsire,dam,label\n,,2\n,,1\n2,,3\n3,1,4\n"},
      {"pedtools",
       "pedtools.csv\nid,fid,mid,sex\n1,0,0,2\n2,0,0,1\n3,0,0,2\n4,2,3,1\n5,4,1,2\n"
       "pedtools_key.csv\nnumber,id\n1,2\n2,1\n3,dam_of_3\n4,3\n5,4\n"},
      {"plink", "plink.fam\n1 2 0 0 2 -9\n1 1 0 0 1 -9\n1 3 1 0 1 -9\n1 4 3 2 2 -9\n"},
      {"purgeR",
       "purgeR.csv\nid,dam,sire,sex,birth_year\n1,0,0,female,\n2,0,0,male,1999\n3,0,2,,2003\n4,1,3,female,2004\n"
       "purgeR_key.csv\nnumber,id\n1,2\n2,1\n3,3\n4,4\n"},
      {"sequoia",
       "sequoia.csv\nid,dam,sire\n2,,\n1,,\n3,,1\n4,2,3\n"
       "sequoia_life.csv\nID,Sex,BirthYear\n2,1,-999\n1,2,1999\n3,3,2003\n4,1,2004\n"},
  };
  ASSERT_EQ(rPackages().size(), std::size(cases));
  for (const auto& [package, expected] : cases) {
    EXPECT_EQ(exported(FAMILY, package), expected) << package;
  }
}

TEST_F(RPackagesTest, IdsThatAProgramCannotTakeBecomeNumbers) {
  EXPECT_EQ(exported("id,sire,sex\nx y,a,f\na,,m\n", "plink"),
            "plink.fam\n1 1 0 0 1 -9\n1 2 1 0 2 -9\nplink_key.csv\nnumber,id\n1,a\n2,x y\n");
}

TEST_F(RPackagesTest, AnimalsWithOneIdAreToldApart) {
  EXPECT_EQ(exported("id,sire\nx y,4\n4,\n4,\n4#2,\n4,\n", "nadiv"),
            "nadiv.csv\nID,Dam,Sire,Sex\n4,,,\nx y,,4,\n4#3,,,\n4#4,,,\n");
}

TEST_F(RPackagesTest, ImpossiblePedigreesAreRefused) {
  EXPECT_EQ(exported("id,sire\n4,3\n3,2\n2,4\n", "nadiv"), "animal \"4\" is its own ancestor; correct that first");
  EXPECT_NE(exported("id,sire,sex\n4,3,m\n3,,f\n", "kinship2").find("\"3\" is a sire but female"), std::string::npos);
  EXPECT_EQ(exported("id,sire,sex\n4,3,m\n3,,f\n", "nadiv").substr(0, 9), "nadiv.csv");
}

// Everything about each animal of the view, with what no table gives.
TEST_F(RPackagesTest, TheTableOfAnimalsHasAllFields) {
  const std::string book = table("a.csv",
                                 "id,sire,dam,sex,birth_date,death_date,birth_location,Name\n"
                                 "1,,,m,1990,,North,=x\n2,,,f,1991-05,~1999,North,\"a,b\"\n3,1,2,f,1995-03-04,,South,\n"
                                 "4,1,3,m,1999-01-01,,South,-1.5\n");
  ASSERT_EQ(run({"--studbook", book, "export", "animals", "--to", home, "--overwrite", "--sex", "male"}), 0);
  const std::string content = contentOf(at("animals.csv"));
  const auto column = [&](std::size_t row, const std::string& name) {
    std::istringstream lines(content);
    std::string titles;
    std::string cells;
    std::getline(lines, titles);
    for (std::size_t line = 0; line < row; ++line) {
      std::getline(lines, cells);
    }
    std::istringstream title_list(titles);
    std::istringstream cell_list(cells);
    std::string cell;
    for (std::string title; std::getline(title_list, title, ',') && std::getline(cell_list, cell, ',');) {
      if (title == name) {
        return cell;
      }
    }
    return "no " + name;
  };
  const struct {
    std::size_t row;
    const char* column;
    const char* cell;
  } cases[] = {{1, "id", "1"},
               {1, "birth_accuracy", "by year"},
               {1, "Name", "'=x"},
               {1, "breeder", "true"},
               {2, "id", "4"},
               {2, "birth_date", "1999-01-01"},
               {2, "Name", "-1.5"},
               {2, "fcoef", "0.25"},
               {2, "birth_location_name", "South"},
               {2, "g_cites", "1"},
               {2, "dam", "3"},
               {2, "death_date", ""}};
  for (const auto& [row, name, cell] : cases) {
    EXPECT_EQ(column(row, name), cell) << name << " of row " << row;
  }
  EXPECT_EQ(std::count(content.begin(), content.end(), '\n'), 3);
}

}  // namespace
}  // namespace spx::console
