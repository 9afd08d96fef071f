#include "spx/project/project.h"

#include <regex>

#include "spx/support/julian_date.h"

#include "tests/support/expected_file.h"
#include "tests/support/temporary_home.h"

namespace spx {
namespace {

class Projects : public TemporaryHome {
 protected:
  Projects() {
    std::filesystem::create_directories(at("spx/projects"));
    std::filesystem::create_directory(at("farm"));
  }

  static std::string here() { return std::filesystem::current_path().string(); }
};

// Absolute, by "~", with a final slash and relative to the working directory.
TEST_F(Projects, AreCreatedWithTreeAndKeyFile) {
  const std::string farm = at("farm"), today = qs_lib::getTodayAsISO();
  const std::pair<std::string, std::string> parents[] = {
      {farm, farm}, {"~/farm", farm}, {farm + "/", farm + "/"}, {"farm", farm}};
  for (const auto& [given, parent] : parents) {
    std::filesystem::current_path(home);
    Project project;
    project.set("OTHER", "TEXT", "of another project", "");
    EXPECT_TRUE(project.create("  herd 1 ", given)) << given;
    EXPECT_EQ(here(), at("spx/projects")) << "the directory before the call";
    EXPECT_EQ(takeOutput() + takeErrors(), parent + "/herd 1\nCreated new project herd 1\n");
    const std::string file = contentOf(farm + "/herd 1/herd 1.project");
    expectFile(masked(std::regex_replace(file, std::regex(parent + "/"), "PARENT/"), today),
               "project/expected/herd_1.project");
    EXPECT_FALSE(qs_lib::isUseTime());
    for (const char* name : {"views", "reports", "export", "graphics"}) {
      EXPECT_TRUE(std::filesystem::remove(farm + "/herd 1/" + name)) << name;
    }
    EXPECT_EQ(std::filesystem::remove_all(farm + "/herd 1"), 2U) << "and nothing else";
  }
}

TEST_F(Projects, WhoseNameBeginsWithATildeStayInTheirDirectory) {
  Project project;
  EXPECT_TRUE(project.create("~wild", at("farm")));
  EXPECT_TRUE(std::filesystem::is_directory(at("farm/~wild/views")));
  EXPECT_TRUE(std::filesystem::exists(at("farm/~wild/~wild.project")));
  EXPECT_FALSE(std::filesystem::exists(home + "wild"));
}

TEST_F(Projects, AreNotCreatedInTheWrongPlace) {
  std::filesystem::current_path(home);
  Project project;
  const std::pair<std::string, std::string> cases[] = {{"", "farm"},    {" \t\n", "farm"}, {"..", "farm"},
                                                       {"a/b", "farm"}, {"../x", "farm"},  {"x", "missing"},
                                                       {"x", ""},       {"x", "~nobody"}};
  for (const auto& [name, directory] : cases) {
    EXPECT_FALSE(project.create(name, directory)) << name << " in " << directory;
    EXPECT_EQ(takeOutput() + takeErrors(), "");
    EXPECT_EQ(here(), home);
    EXPECT_EQ(project.getDirectory(), at("spx/projects"));
  }
  EXPECT_TRUE(std::filesystem::is_empty("farm"));
}

TEST_F(Projects, ThatExistAreLeftAlone) {
  std::filesystem::create_directory(at("farm/herd"));
  Project project;
  project.setName("herd 0");
  EXPECT_FALSE(project.create("herd ", at("farm")));
  EXPECT_EQ(takeOutput() + takeErrors(), "Project already exists\n");
  EXPECT_EQ(here(), at("farm"));
  EXPECT_EQ(project.getDirectory(), at("farm/herd")) << "hosts open it so";
  EXPECT_TRUE(std::filesystem::is_empty(at("farm/herd")));
  EXPECT_TRUE(project.remove());
  EXPECT_EQ(takeOutput(), "Removed project herd 0\n");
  EXPECT_TRUE(std::filesystem::exists(at("farm/herd")));
}

TEST_F(Projects, SaveThemselvesWhenAsked) {
  // Named or not, with the flag or without, and the files that were found afterwards.
  const std::tuple<const char*, bool, std::ptrdiff_t> cases[] = {{"", true, 0}, {"herd", false, 0}, {"herd", true, 1}};
  for (const auto& [name, save, files] : cases) {
    {
      Project project;
      project.setName(name);
      project.setName("");
      EXPECT_EQ(project.get("NAME").value + project.getName() + project.projectName(), std::string(name) + name + name);
      project.setSaveOnClose(save);
    }
    const std::filesystem::directory_iterator found(at("spx/projects"));
    EXPECT_EQ(std::distance(begin(found), end(found)), files) << name << save;
  }
}

}  // namespace
}  // namespace spx
