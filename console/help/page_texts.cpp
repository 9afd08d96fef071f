// The help texts of the commands. A test runs every example, in this order.
#include "console/help/command_pages.h"

namespace spx::console {

const std::vector<command_page>& commandPages() {
  static const std::vector<command_page> pages = {
      {"help", "Without a command, explains the program. The same as COMMAND --help.", "spx help view set"},
      {"check",
       "Goes through all animals, whatever the view. Errors cannot be true: duplicate IDs, parents of\n"
       "the wrong sex, births before the parent's, deaths before the birth. Warnings are unlikely:\n"
       "parents without a record, parents at different places. Notes are worth knowing. Dates are\n"
       "compared as exactly as they are known. --codes lists the rules with their codes. The exit code\n"
       "is 3 when there are errors, or placeholders that were not accepted (see help import). In a\n"
       "studbook file, --fix asks about each finding that has only one sensible fix, and --yes CODE fixes\n"
       "those of a code without asking.",
       "spx --studbook examples/studbook check\n"
       "spx --studbook examples/studbook check --only parent-sex,own-parent --all\n"
       "spx check --codes\n"
       "spx --studbook examples/studbook check --strict --except undecided --format json"},
      {"summary",
       "Counts the animals of the view: status, sex, origin, parents, breeding, dates. The column\n"
       "Living counts those that are alive and present on the day of --on (default: today). Founders\n"
       "are animals without a known parent; placeholders are not counted as animals.",
       "spx --studbook examples/studbook summary --on 2005-12-31\n"
       "spx --studbook examples/studbook summary --format json"},
      {"info", "Counts the records, placeholders included, and how many fit.", "spx --studbook examples/studbook info"},
      {"import",
       "Checks tables and makes a studbook file from them: the one of --studbook, or the project's\n"
       "own. An existing studbook file is updated: what the tables add, change and remove is\n"
       "shown, and is a single change, which spx undo takes back. Where they would take back what\n"
       "was changed by hand, --ours or --theirs has to say which side is right. Columns and tables\n"
       "that are not given are kept. Nothing is written when the tables have faults.\n"
       "Animals whose IDs are placeholders of unknown animals (they begin with P, WILD, UNK, MULT,\n"
       "GROUP, HERD or COLONY) would not appear in any list. They are named, and nothing is written,\n"
       "unless --id-prefix gives every ID a prefix (export tables --drop-id-prefix removes it again), or\n"
       "--placeholders accepts them.",
       "spx import examples/studbook --dry-run\n"
       "spx --studbook ~/tarrow.studbook import examples/studbook"},
      {"birth", "Adds captive-born young of known parents to a studbook file. Several IDs are a litter.",
       "spx --studbook ~/tarrow.studbook birth 0200 0201 --dam 0141 --sire 0140 --on 2024-05 "
       "--at 2.1.1"},
      {"death", "Enters the day and place of animals' deaths in a studbook file.",
       "spx --studbook ~/tarrow.studbook death 0201 --on 2024-06-11"},
      {"transfer", "Enters that animals arrived at another location. spx event add enters other events.",
       "spx --studbook ~/tarrow.studbook transfer 0200 0141 --to 2.1.3 --on 2025-02-01"},
      {"loss", "Enters that animals were lost to follow-up: nothing is known of them from that day on.",
       "spx --studbook ~/tarrow.studbook loss 0136 --on 2025"},
      {"animal add", "Adds an animal to a studbook file; what is not given is unknown.",
       "spx --studbook ~/tarrow.studbook animal add 0202 dam=0003 sex=f birth_date=1992-05"},
      {"animal set",
       "Changes fields of animals in a studbook file; an empty value makes a field unknown. The\n"
       "animals are named, or chosen with --where; of animals with the same ID, 0144#2 is the\n"
       "second. Everything is checked first; either all of it is changed or nothing.",
       "spx --studbook ~/tarrow.studbook animal set 0003 rearing=hand house_name=Marla\n"
       "spx --studbook ~/tarrow.studbook animal set --where house_name=Ginger taxon=montana"},
      {"animal remove", "Removes animals with their events from a studbook file. A parent is refused.",
       "spx --studbook ~/tarrow.studbook animal remove 0202"},
      {"animal rename", "Changes an ID, also where the animal is a parent. Its events stay with it.",
       "spx --studbook ~/tarrow.studbook animal rename 0144#2 0203"},
      {"animal merge",
       "Merges the second animal into the first, which takes its events, its offspring and the\n"
       "values that it lacks. Where the two differ, give the right value as FIELD=VALUE.",
       "spx --studbook ~/tarrow.studbook animal merge 0144 0203 microchip=985000047660979 "
       "birth_location=2.3.2"},
      {"event add", "Adds an event to animals of a studbook file.",
       "spx --studbook ~/tarrow.studbook event add 0200 date=2025-03-01 event=social-in "
       "location=2.1.1"},
      {"event set",
       "Changes events in a studbook file: the only one of an animal, its N-th, or those that\n"
       "meet all conditions.",
       "spx --studbook ~/tarrow.studbook event set 0001 --number 2 location=2.1.1"},
      {"event remove", "Removes events from a studbook file, chosen as for event set.",
       "spx --studbook ~/tarrow.studbook event remove 0200 --where event=social-in"},
      {"location add", "Adds a location to the table of a studbook file.",
       "spx --studbook ~/tarrow.studbook location add New_Zoo --in 2"},
      {"location set", "Changes a location. Animals and events follow a new name or identifier.",
       "spx --studbook ~/tarrow.studbook location set New_Zoo latitude=48.2 longitude=16.3"},
      {"location merge", "Merges the second location into the first, which takes its animals and events.",
       "spx --studbook ~/tarrow.studbook location merge 2.1 New_Zoo"},
      {"field add", "Adds a field of your own to the animals, or with --of events to the events.",
       "spx --studbook ~/tarrow.studbook field add tattoo"},
      {"field rename", "Renames one of your fields.", "spx --studbook ~/tarrow.studbook field rename tattoo mark"},
      {"field remove", "Removes one of your fields with all its values.",
       "spx --studbook ~/tarrow.studbook field remove mark"},
      {"log",
       "Lists who changed what, when and why. With an ID, or the number of a change, each value\n"
       "is shown before and after.",
       "spx --studbook ~/tarrow.studbook log\n"
       "spx --studbook ~/tarrow.studbook log 0003"},
      {"undo",
       "Takes the last change back, or those with the given numbers. A change that a later one\n"
       "builds on is refused.",
       "spx --studbook ~/tarrow.studbook undo\n"
       "spx --studbook ~/tarrow.studbook undo 3 4"},
      {"redo", "Repeats the change that was undone last.", "spx --studbook ~/tarrow.studbook redo"},
      {"diff",
       "Compares two editions, tables or studbook files: animals, events, locations and fields\n"
       "that were added, removed or changed. Exits with 0 when they are the same, and with 1 when\n"
       "they differ.",
       "spx diff examples/studbook ~/tarrow.studbook"},
      {"restore", "Writes the studbook as it was at a given time to another file. A day means its end.",
       "spx --studbook ~/tarrow.studbook restore --at 2999-12-31 -o ~/former.studbook"},
      {"list",
       "Lists the animals of the view; without options, every animal but no placeholders. Age,\n"
       "status and location are today's, or those of --alive-on. With a location only the animals that\n"
       "were ever there are listed; with a period only those that were alive and present in it.\n"
       "--columns NAME,... shows other columns; --format json shows their names.",
       "spx --studbook examples/studbook list --sex male --birth-accuracy accurate\n"
       "spx --studbook examples/studbook list --where sex=female --sort -age_years --limit 10\n"
       "spx --studbook examples/studbook list --format csv"},
      {"living",
       "Lists the animals of the view that are alive and present in its locations on the day of --on\n"
       "(default: today). An animal is present from its birth or entry until its death, loss or\n"
       "departure. Animals without any date are left out, since it is not known when they lived.",
       "spx --studbook examples/studbook living --on 2010-12-31"},
      {"find",
       "Finds animals whose ID or user-defined fields (house name, transponder) contain the text,\n"
       "whatever the view. Upper and lower case are treated as the same.",
       "spx --studbook examples/studbook find mar"},
      {"offspring", "Lists all offspring, whatever the view, the oldest first.",
       "spx --studbook examples/studbook offspring 0003"},
      {"pedigree", "Lists the animal and all its ancestors, whatever the view and the dates, the oldest first.",
       "spx --studbook examples/studbook pedigree 0120"},
      {"show", "Shows everything known about one animal: status, dates, places, parents, events, user-defined fields.",
       "spx --studbook examples/studbook show 0001\n"
       "spx --studbook examples/studbook show 0001 --format json"},
      {"genetics",
       "Shows the genetic state of the living animals of the view: founders, inbreeding, kinship,\n"
       "diversity, generations, effective size; next to it that of the whole living population where\n"
       "the view is only a part of it. Ancestors are always those of the whole studbook.\n"
       "docs/genetics.md explains every number.",
       "spx --studbook examples/studbook genetics\n"
       "spx --studbook examples/studbook genetics --location 2 --format json"},
      {"inbreeding",
       "Without an ID: the animals of the view that were ever there, dead or alive. With an ID also the\n"
       "common ancestors of its parents, each with its part of F.",
       "spx --studbook examples/studbook inbreeding 0136\n"
       "spx --studbook examples/studbook inbreeding 0136 --partial\n"
       "spx --studbook examples/studbook inbreeding --living --sort -f --limit 10"},
      {"kinship", "Shows the kinship of animals by their IDs, or of all living animals of the view.",
       "spx --studbook examples/studbook kinship 0129 0136 0147\n"
       "spx --studbook examples/studbook kinship 0129 0136 0147 --matrix\n"
       "spx --studbook examples/studbook kinship --all --format csv"},
      {"mean-kinship",
       "The list to work from: animals at the top have the fewest living relatives and should breed\n"
       "first. An animal with few known ancestors ranks high only for lack of data: see Known.",
       "spx --studbook examples/studbook mean-kinship\n"
       "spx --studbook examples/studbook mean-kinship --sex female --unknown exclude"},
      {"founders",
       "Founders whose target is above their contribution are under-represented: breed their descendants.\n"
       "Retention is estimated by dropping genes through the pedigree.",
       "spx --studbook examples/studbook founders --runs 1000"},
      {"gene-drop", "Shows how gene diversity and the number of genes left vary over many gene drops.",
       "spx --studbook examples/studbook gene-drop --runs 1000 --seed 7"},
      {"generations", "Shows the generation numbers of the animals of the view, dead or alive, or of given animals.",
       "spx --studbook examples/studbook generations --living"},
      {"completeness", "Shows the share of known ancestors in each generation back, and an index over all of them.",
       "spx --studbook examples/studbook completeness --living --generations 4"},
      {"pairs",
       "Ranks the pairs of living males and females, the best for gene diversity first, or picks a good\n"
       "combination of pairs. Animals that cannot breed are left out and named: those too young or too old\n"
       "according to the project's life history, or of unknown sex.",
       "spx --studbook examples/studbook pairs --max-kinship 0.1 --limit 10\n"
       "spx --studbook examples/studbook pairs --pick 5 --most-per-male 2"},
      {"effective-size",
       "Shows the effective size by six methods with their intervals. Their assumptions differ, so say\n"
       "which one you report.",
       "spx --studbook examples/studbook effective-size\n"
       "spx --studbook examples/studbook effective-size --intervals"},
      {"census",
       "One row per census day: the animals present, and the births, deaths, entries, departures and\n"
       "losses since the previous census. Every row adds up. With --location, the census of a place.\n"
       "docs/demography.md explains every figure of this and the next commands.",
       "spx --studbook examples/zoos census --from 2010 --location 2.1\n"
       "spx --studbook examples/zoos census --census-interval five-year --format csv"},
      {"age-pyramid", "The animals present on a day by sex and age class, with bars at a terminal.",
       "spx --studbook examples/zoos age-pyramid --on 2000-01-01 --class-width 2y"},
      {"survival",
       "Kaplan-Meier curves with delayed entry: animals count from the age at which they come. Groups\n"
       "are compared by the log-rank test. CSV and JSON have every step of the curves.",
       "spx --studbook examples/zoos survival --by sex\n"
       "spx --studbook examples/zoos survival --by period --period-years 25 --format csv --unit days"},
      {"life-table",
       "Deaths and births by age class: of females, males, and all. --columns shows more columns:\n"
       "intervals of q and l, L, T, time lived, reproductive value, stable age distribution.",
       "spx --studbook examples/zoos life-table --where sex=female\n"
       "spx --studbook examples/zoos life-table --columns sex,age,q,q_lower,q_upper"},
      {"reproduction", "Ages of parents, litters, intervals, season, sex ratio, breeders among the adults.",
       "spx --studbook examples/zoos reproduction --litter-days 3"},
      {"growth",
       "R0, generation time, r and lambda from the life table, with bootstrap intervals, next to the\n"
       "growth of the census.",
       "spx --studbook examples/zoos growth --runs 200 --seed 7\n"
       "spx --studbook examples/zoos growth --runs 200 --format json"},
      {"projection",
       "Projects the living animals forward with the Leslie matrix, without and with chance. Nothing\n"
       "enters or leaves, and the rates of the life table stay as they are.",
       "spx --studbook examples/zoos projection --years 10 --runs 200 --fewer-than 50"},
      {"demography", "Numbers, changes in the last twelve months, growth, survival and reproduction in one table.",
       "spx --studbook examples/zoos demography --until 2020-12-31"},
      {"report",
       "Writes the yearly report: one HTML page with summary, census, ages, survival, growth, genetics,\n"
       "founders, mean kinship, best pairs, the living by location and the findings of check. It opens in\n"
       "any browser and needs no network. See docs/pictures.md.",
       "spx --studbook examples/zoos report -o report.html\n"
       "spx --studbook examples/zoos report --location 2 --sections census,pairs -o zoo.html"},
      {"draw pedigree",
       "Draws the ancestors of an animal with Graphviz: squares are males, circles females; a slash marks\n"
       "the dead, a double line related parents, and darker blue higher inbreeding.",
       "spx --studbook examples/zoos draw pedigree 300 --depth 4 -o 300.svg"},
      {"draw kinship", "Draws the kinship of every pair of living animals of the view, for at most 150 animals.",
       "spx --studbook examples/zoos draw kinship --location 2 -o kinship.svg"},
      {"draw founders", "Draws what each founder contributes to the living of the view, and what is left of its genes.",
       "spx --studbook examples/zoos draw founders -o founders.svg"},
      {"draw inbreeding", "Draws the mean inbreeding of the animals by the year of their birth.",
       "spx --studbook examples/zoos draw inbreeding -o inbreeding.svg"},
      {"draw diversity", "Draws the gene diversity of the animals alive at the end of each year.",
       "spx --studbook examples/zoos draw diversity -o diversity.svg"},
      {"draw census", "Draws the animals of each census by sex.",
       "spx --studbook examples/zoos draw census -o census.svg"},
      {"draw pyramid", "Draws the ages of the animals present on a day by sex.",
       "spx --studbook examples/zoos draw pyramid -o pyramid.svg"},
      {"draw births", "Draws the births by month.", "spx --studbook examples/zoos draw births -o births.svg"},
      {"draw projection", "Draws the numbers expected if births and deaths stay as they are.",
       "spx --studbook examples/zoos draw projection -o projection.svg"},
      {"draw survival", "Draws the share of the animals that reaches each age, with 95 % intervals.",
       "spx --studbook examples/zoos draw survival --by sex -o survival.svg"},
      {"locations", "Lists the locations by identifier, with the number of animals that live there or within.",
       "spx --studbook examples/studbook locations"},
      {"taxa", "Lists the taxa with the number of animals; \"generic\" means that no taxon is given.",
       "spx --studbook examples/studbook taxa"},
      {"programs", "Lists the breeding programmes.", "spx --studbook examples/studbook programs"},
      {"user-fields", "Lists the user-defined fields: the columns of the animals table that spx does not know.",
       "spx --studbook examples/studbook user-fields"},
      {"project create",
       "Creates the directories and the settings of a project in ~/spx/projects. Views, reports and\n"
       "exports of the project then go there.",
       "spx project create tarrow"},
      {"project list", "Lists the names of the projects in ~/spx/projects.", "spx project list"},
      {"project show", "Shows where the project keeps its files, and its other settings.", "spx project show tarrow"},
      {"view show",
       "Shows the view that other commands would use: that of --view, or the current view of the\n"
       "project, or the default view, with the settings of this command line.",
       "spx --studbook examples/studbook view show --sex female"},
      {"view set",
       "Changes the current view of the project, which all its commands use. The last day and the\n"
       "day of the view stay today unless a day is set.",
       "spx --project tarrow --studbook examples/studbook view set sex=female from=1990-01-01"},
      {"view save",
       "Saves the current view, with the settings of this command line, under a name. An existing\n"
       "view is replaced only with --overwrite.",
       "spx --project tarrow view save females"},
      {"view list", "Lists the saved views of the project.", "spx --project tarrow view list"},
      {"view load", "Makes a saved view the current one. The present current view is lost unless it was saved.",
       "spx --project tarrow view load females"},
      {"view clear", "Removes the current view of the project; saved views stay.", "spx --project tarrow view clear"},
      {"view delete", "Deletes a saved view. The current view stays as it is.",
       "spx --project tarrow view delete females"},
      {"life-history show", "Shows the parameters of the project, or the defaults without a project.",
       "spx --project tarrow life-history show"},
      {"life-history set", "Sets parameters of the project; the others stay.",
       "spx --project tarrow life-history set male-reproductive-lower=700 "
       "male-reproductive-upper=6000"},
      {"life-history save", "Writes the parameters of the project to a file.",
       "spx --project tarrow life-history save ~/tarrow.biology"},
      {"life-history load", "Replaces all parameters by those of a file that life-history save has written.",
       "spx --project tarrow life-history load ~/tarrow.biology"},
      {"trace-parents",
       "Finds the possible parents of the animals of the view whose sire or dam is unknown, by sex, age,\n"
       "place and season, and writes a report (XML). Needs the reproductive ages of the life history. If\n"
       "the report will be large, says so first; --most-candidates limits it.",
       "spx --project tarrow --studbook examples/studbook trace-parents --sex male"},
      {"export pedigree",
       "Writes the animals of the view, every animal by default; --with-ancestors adds their ancestors.",
       "spx --project tarrow --studbook examples/studbook export pedigree --sex female --with-ancestors"},
      {"export animals", "Writes every field of each animal of the view: IDs, dates with their accuracy, own fields.",
       "spx --project tarrow --studbook examples/studbook export animals"},
      {"export r",
       "Writes the animals of the view and their ancestors in the form that the package needs, and a script for it.",
       "spx --project tarrow --studbook examples/studbook export r --for nadiv"},
      {"export fields", "Writes all fields of the animals of the view that died or were lost in its period.",
       "spx --project tarrow --studbook examples/studbook export fields --from 1980-01-01"},
      {"export dattrf", "Writes the animals of the view in columns of fixed width, with their births and deaths.",
       "spx --project tarrow --studbook examples/studbook export dattrf"},
      {"export view", "Writes the settings of the view as comments, to go with tables made from it.",
       "spx --project tarrow --studbook examples/studbook export view --sex female"},
      {"export r-loader", "Writes an R script that reads the exported tables into data frames.",
       "spx --project tarrow --studbook examples/studbook export r-loader"},
      {"export filters", "Writes a row per animal with the result of every predicate, for diagnosis.",
       "spx --project tarrow --studbook examples/studbook export filters"},
      {"export tables", "Writes a studbook file back as tables; importing them gives the same studbook again.",
       "spx --project tarrow --studbook ~/tarrow.studbook export tables"},
      {"filters", "The same as export filters; without --to and without a project, into the current directory.",
       "spx --studbook examples/studbook filters --to ~/"},
      {"project remove", "Moves the project to ~/spx/removed: nothing is lost, and the name is free again.",
       "spx project remove tarrow"},
  };
  return pages;
}

}  // namespace spx::console
