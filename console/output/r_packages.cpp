#include "console/output/r_packages.h"

#include <algorithm>
#include <cctype>
#include <functional>

#include "spx/support/julian_date.h"

#include "console/base/csv_cell.h"
#include "console/base/display_text.h"
#include "console/output/package_pedigree.h"

namespace spx::console {
namespace {

using pedigree = std::vector<pedigree_member>;

constexpr std::size_t NONE = pedigree_member::NONE;

constexpr const char* PACKAGES[] = {"kinship2", "nadiv", "optiSel", "pedigreemm",
                                    "pedtools", "plink", "purgeR",  "sequoia"};

std::string number(std::size_t place) {
  return std::to_string(place + 1);
}

/// A comma-separated table: a header and a row per animal.
std::string csv(const pedigree& members, const std::string& titles,
                const std::function<std::vector<std::string>(std::size_t)>& cells) {
  std::string text = titles + "\n";
  for (std::size_t member = 0; member < members.size(); ++member) {
    bool first = true;
    for (const std::string& cell : cells(member)) {
      text += first ? "" : ",";
      appendCsvCell(text, utf8Text(cell));
      first = false;
    }
    text += "\n";
  }
  return text;
}

std::string idOf(const pedigree& members, std::size_t place, const char* unknown) {
  return place == NONE ? unknown : members[place].id;
}

std::string numberOf(std::size_t place, const char* unknown) {
  return place == NONE ? unknown : number(place);
}

std::string sexCode(SEX sex, const char* male, const char* female, const char* other) {
  return sex == SEX::MALE ? male : sex == SEX::FEMALE ? female : other;
}

std::string birthYear(const pedigree_member& member, const char* unknown) {
  const auto day = member.record == nullptr ? 0 : member.record->birth.date;
  return day == 0 ? unknown : qs_lib::julianToISO(qs_lib::dayToMs(day)).substr(0, 4);
}

bool isDead(const pedigree_member& member) {
  return member.record != nullptr && member.record->death.date != 0;
}

/// Whether the ID consists of letters, digits and "_" only.
bool isPlainId(const std::string& id) {
  return !id.empty() && std::all_of(id.begin(), id.end(), [](char letter) {
    return letter == '_' || (letter >= '0' && letter <= '9') || (letter >= 'A' && letter <= 'Z') ||
           (letter >= 'a' && letter <= 'z');
  });
}

/// The key table: number and ID of each animal.
package_file keyTable(const std::string& package, const pedigree& members) {
  return {package + "_key.csv", csv(members, "number,id", [&](std::size_t member) {
            return std::vector<std::string>{number(member), members[member].id};
          })};
}

/// Replaces the IDs by numbers when a program would cut or refuse one of them; a key table then
/// maps the numbers to the IDs. @return whether it did
bool renumber(pedigree& members) {
  const bool are_plain =
      std::all_of(members.begin(), members.end(), [](const pedigree_member& each) { return isPlainId(each.id); }) &&
      std::none_of(members.begin(), members.end(), [](const pedigree_member& each) { return each.id == "0"; });
  if (are_plain) {
    return false;
  }
  for (std::size_t member = 0; member < members.size(); ++member) {
    members[member].id = number(member);
  }
  return true;
}

using files = std::vector<package_file>;

files kinship2() {
  pedigree members = withBothParents(printedPedigree());
  settleParentSexes(members);
  return {{"kinship2.csv", csv(members, "id,dadid,momid,sex,status",
                               [&](std::size_t member) {
                                 const pedigree_member& each = members[member];
                                 return std::vector<std::string>{
                                     each.id, idOf(members, each.sire, ""), idOf(members, each.dam, ""),
                                     sexCode(each.sex, "1", "2", "3"), isDead(each) ? "1" : "0"};
                               })},
          {"kinship2.R",
           "library(kinship2)\n"
           "ped <- read.csv(\"kinship2.csv\", colClasses = rep(c(\"character\", \"integer\"), c(3, 2)), "
           "na.strings = character(0), encoding = \"UTF-8\")\n"
           "ped <- with(ped, pedigree(id, dadid, momid, sex, status = status, missid = \"\"))\n"}};
}

files nadiv() {
  const pedigree members = printedPedigree();
  return {{"nadiv.csv", csv(members, "ID,Dam,Sire,Sex",
                            [&](std::size_t member) {
                              const pedigree_member& each = members[member];
                              return std::vector<std::string>{each.id, idOf(members, each.dam, ""),
                                                              idOf(members, each.sire, ""),
                                                              sexCode(each.sex, "M", "F", "")};
                            })},
          {"nadiv.R",
           "library(nadiv)\n"
           "ped <- read.csv(\"nadiv.csv\", colClasses = \"character\", na.strings = \"\", encoding = \"UTF-8\")\n"
           "ainverse <- makeAinv(ped[, c(\"ID\", \"Dam\", \"Sire\")])$Ainv\n"}};
}

files optiSel() {
  const pedigree members = printedPedigree();
  return {{"optiSel.csv", csv(members, "Indiv,Sire,Dam,Sex,Breed,Born",
                              [&](std::size_t member) {
                                const pedigree_member& each = members[member];
                                const std::string breed = each.record == nullptr ? "" : *each.record->taxon;
                                return std::vector<std::string>{each.id,
                                                                idOf(members, each.sire, ""),
                                                                idOf(members, each.dam, ""),
                                                                sexCode(each.sex, "male", "female", ""),
                                                                breed,
                                                                birthYear(each, "")};
                              })},
          {"optiSel.R",
           "library(optiSel)\n"
           "ped <- read.csv(\"optiSel.csv\", colClasses = rep(c(\"character\", \"numeric\"), c(5, 1)), "
           "na.strings = \"\", encoding = \"UTF-8\")\n"
           "ped <- prePed(ped)\n"}};
}

files pedigreemm() {
  const pedigree members = printedPedigree();
  return {{"pedigreemm.csv",
           csv(members, "sire,dam,label",
               [&](std::size_t member) {
                 const pedigree_member& each = members[member];
                 return std::vector<std::string>{numberOf(each.sire, ""), numberOf(each.dam, ""), each.id};
               })},
          {"pedigreemm.R",
           "library(pedigreemm)\n"
           "ped <- read.csv(\"pedigreemm.csv\", colClasses = rep(c(\"integer\", \"character\"), c(2, 1)), "
           "encoding = \"UTF-8\")\n"
           "ped <- pedigree(sire = ped$sire, dam = ped$dam, label = ped$label)\n"}};
}

files pedtools() {
  pedigree members = withBothParents(printedPedigree());
  settleParentSexes(members);
  return {{"pedtools.csv", csv(members, "id,fid,mid,sex",
                               [&](std::size_t member) {
                                 const pedigree_member& each = members[member];
                                 return std::vector<std::string>{number(member), numberOf(each.sire, "0"),
                                                                 numberOf(each.dam, "0"),
                                                                 sexCode(each.sex, "1", "2", "0")};
                               })},
          keyTable("pedtools", members),
          {"pedtools.R",
           "library(pedtools)\n"
           "ped <- as.ped(read.csv(\"pedtools.csv\"))\n"
           "key <- read.csv(\"pedtools_key.csv\", colClasses = \"character\", encoding = \"UTF-8\")\n"}};
}

files plink() {
  pedigree members = printedPedigree();
  const pedigree named = members;
  settleParentSexes(members);
  const bool is_renumbered = renumber(members);
  std::string fam;
  for (const pedigree_member& each : members) {
    fam += "1 " + each.id + " " + idOf(members, each.sire, "0") + " " + idOf(members, each.dam, "0") + " " +
           sexCode(each.sex, "1", "2", "0") + " -9\n";
  }
  files made = {{"plink.fam", fam}};
  if (is_renumbered) {
    made.push_back(keyTable("plink", named));
  }
  made.push_back({"plink.R",
                  "ped <- read.table(\"plink.fam\", colClasses = \"character\")\n"
                  "names(ped) <- c(\"FID\", \"IID\", \"father\", \"mother\", \"sex\", \"phenotype\")\n"
                  "# PLINK itself: plink --bfile DATA --fam plink.fam, with genotypes in the same order\n"});
  return made;
}

files purgeR() {
  const pedigree members = printedPedigree();
  return {{"purgeR.csv", csv(members, "id,dam,sire,sex,birth_year",
                             [&](std::size_t member) {
                               const pedigree_member& each = members[member];
                               return std::vector<std::string>{
                                   number(member), numberOf(each.dam, "0"), numberOf(each.sire, "0"),
                                   sexCode(each.sex, "male", "female", ""), birthYear(each, "")};
                             })},
          keyTable("purgeR", members),
          {"purgeR.R",
           "library(purgeR)\n"
           "ped <- ip_F(read.csv(\"purgeR.csv\", na.strings = \"\"))\n"
           "key <- read.csv(\"purgeR_key.csv\", colClasses = \"character\", encoding = \"UTF-8\")\n"}};
}

files sequoia() {
  pedigree members = printedPedigree();
  const pedigree named = members;
  const bool is_renumbered = renumber(members);
  const auto parents = [&](std::size_t member) {
    const pedigree_member& each = members[member];
    return std::vector<std::string>{each.id, idOf(members, each.dam, ""), idOf(members, each.sire, "")};
  };
  // In this format females are 1 and an unknown year is -999.
  const auto life = [&](std::size_t member) {
    const pedigree_member& each = members[member];
    const std::string other = each.sex == SEX::HERMAPHRODITE ? "4" : "3";
    return std::vector<std::string>{each.id, sexCode(each.sex, "2", "1", other.c_str()), birthYear(each, "-999")};
  };
  files made = {{"sequoia.csv", csv(members, "id,dam,sire", parents)},
                {"sequoia_life.csv", csv(members, "ID,Sex,BirthYear", life)}};
  if (is_renumbered) {
    made.push_back(keyTable("sequoia", named));
  }
  made.push_back({"sequoia.R",
                  "library(sequoia)\n"
                  "ped <- read.csv(\"sequoia.csv\", colClasses = \"character\", na.strings = \"\")\n"
                  "life <- read.csv(\"sequoia_life.csv\", colClasses = c(\"character\", \"integer\", "
                  "\"integer\"))\n"});
  return made;
}

}  // namespace

std::span<const char* const> rPackages() {
  return PACKAGES;
}

std::vector<package_file> packageFiles(const std::string& package) {
  using maker = files (*)();
  constexpr maker MAKERS[] = {kinship2, nadiv, optiSel, pedigreemm, pedtools, plink, purgeR, sequoia};
  static_assert(std::size(MAKERS) == std::size(PACKAGES));
  const auto found = std::find(std::begin(PACKAGES), std::end(PACKAGES), package);
  return MAKERS[found - std::begin(PACKAGES)]();
}

}  // namespace spx::console
