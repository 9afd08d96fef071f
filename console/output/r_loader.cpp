#include "console/output/r_loader.h"

namespace spx::console {

std::string rLoader() {
  return R"script(
# Reads the tables that "spx export" wrote next to this script; needs only base R.
#   source("load_studbook.R"); pedigree <- read_pedigree()
# IDs are text (leading zeros are kept), dates have the class Date, missing values are NA.

spx_directory <- local({
  sourced <- Filter(Negate(is.null), lapply(sys.frames(), function(frame) frame$ofile))
  run <- grep("^--file=", commandArgs(FALSE), value = TRUE)
  if (length(sourced) > 0) dirname(sourced[[length(sourced)]])
  else if (length(run) > 0) dirname(sub("^--file=", "", run[1]))
  else "."
})

# A location that the studbook does not know is written as "unknown".
spx_site <- function(values) ifelse(values %in% c("", "unknown"), NA_character_, values)
spx_number <- function(values) {
  numbers <- suppressWarnings(as.numeric(values))
  ifelse(is.nan(numbers), NA_real_, numbers)
}
spx_date <- function(values, format) as.Date(ifelse(values == "", NA, values), format)
spx_table <- function(path, separator) {
  if (file.size(path) == 0) return(data.frame())
  read.table(path, header = TRUE, sep = separator, quote = "\"", comment.char = "",
             na.strings = character(0), colClasses = "character", check.names = FALSE,
             strip.white = FALSE, blank.lines.skip = FALSE, encoding = "UTF-8")
}

# pedigree.csv, one row per animal. CENSORED is 1 for the dead, 0 for the living and the lost.
read_pedigree <- function(directory = spx_directory) {
  table <- spx_table(file.path(directory, "pedigree.csv"), "|")
  for (parent in c("DAM", "SIRE")) table[[parent]][table[[parent]] == "NA"] <- NA
  table$SEX <- factor(table$SEX, c("1", "2", "3"), c("male", "female", "other"))
  table$BIRTHSITE <- spx_site(table$BIRTHSITE)
  table$BIRTHDATE <- spx_date(table$BIRTHDATE, "%Y%m%d")
  table$DEATHDATE <- spx_date(table$DEATHDATE, "%Y%m%d")
  table$CENSORED <- as.integer(table$CENSORED)
  table$F <- spx_number(table$F)
  table$G <- spx_number(table$G)
  table$G[!is.na(table$G) & table$G == -2147483648] <- NA
  table$G <- as.integer(table$G)
  table$BREEDER <- table$BREEDER == "yes"
  table
}

# animal_data.csv, one row per animal of the view that died or was lost in its period; no IDs.
read_fields <- function(directory = spx_directory) {
  table <- spx_table(file.path(directory, "animal_data.csv"), "\t")
  if (ncol(table) == 0) return(table)
  table <- table[, names(table) != "", drop = FALSE]  # every line ends in a TAB
  table$BIRTHDATE <- spx_date(table$BIRTHDATE, "%Y-%m-%d")
  table$DEATHDATE[table$DEATHDATE == "NA"] <- ""
  table$DEATHDATE <- spx_date(table$DEATHDATE, "%Y-%m-%d")
  for (name in c("DEATHAGE", "FCOEF", grep("^GENERATION_", names(table), value = TRUE))) {
    table[[name]] <- spx_number(table[[name]])
  }
  table$BIRTHSITE <- spx_site(table$BIRTHSITE)
  table
}

# Lines of a fixed-width file without the last one, "@". Widths count bytes: a line is read as Latin-1, in which every
# byte is a character, and its texts become UTF-8 when they are cut out.
spx_lines <- function(path) head(readLines(path, encoding = "latin1", warn = FALSE), -1)
spx_utf8 <- function(values) {
  values <- sub(" +$", "", values, useBytes = TRUE)
  Encoding(values) <- "UTF-8"
  values
}

# STUDBOOK.TRF, a birth (B) and a death (D) row per record; the living have a death without a date.
read_trf <- function(directory = spx_directory) {
  lines <- spx_lines(file.path(directory, "STUDBOOK.TRF"))
  form <- "^(.*)([0-9 ]{8})([ADMYU])([BD])(-?[0-9]+) *$"
  column <- function(number) spx_utf8(sub(form, paste0("\\", number), lines, useBytes = TRUE))
  data.frame(ID = column(1), DATE = spx_date(trimws(column(2)), "%Y%m%d"), ACCURACY = column(3),
             EVENT = column(4), LOCATION = as.numeric(column(5)), stringsAsFactors = FALSE)
}

# Values wider than their six columns are written in full. Dam and sire are split at the place that gives the most known
# IDs; where several places do, both parents are NA. All possible splits of all rows are looked up at once.
spx_parents <- function(texts, known) {
  places <- pmax(nchar(texts) - 11, 0)
  row <- rep(seq_along(texts), places)
  cut <- sequence(places) + 5
  dams <- substring(texts[row], 1, cut)
  sires <- substring(texts[row], cut + 1)
  fits <- function(parts) nchar(parts) == 6 | (nchar(parts) > 6 & !endsWith(parts, " "))
  fit <- fits(dams) & fits(sires)
  row <- row[fit]
  pairs <- cbind(spx_utf8(dams[fit]), spx_utf8(sires[fit]))
  found <- (pairs[, 1] %in% known) + (pairs[, 2] %in% known)
  best <- found == ave(found, row, FUN = max)
  best <- best & ave(as.integer(best), row, FUN = sum) == 1
  parents <- matrix(NA_character_, length(texts), 2)
  parents[row[best], ] <- pairs[best, ]
  parents
}

# STUDBOOK.DAT, one row per record, pseudo individuals too; needs STUDBOOK.TRF next to it.
read_dat <- function(directory = spx_directory) {
  lines <- spx_lines(file.path(directory, "STUDBOOK.DAT"))
  events <- read_trf(directory)
  ids <- events$ID[events$EVENT == "B"]
  size <- nchar(lines)
  parents <- substring(lines, pmax(6, nchar(ids, "bytes")) + 1, size - 21)
  pairs <- cbind(spx_utf8(substring(parents, 1, 6)), spx_utf8(substring(parents, 7)))
  wide <- nchar(parents) != 12
  pairs[wide, ] <- spx_parents(parents[wide], ids)
  cell <- function(from_end, width) substring(lines, size - from_end + 1, size - from_end + width)
  data.frame(ID = ids, DAM = pairs[, 1], SIRE = pairs[, 2], SEX = cell(21, 1),
             ORIGIN = cell(20, 1), BIRTHDATE = spx_date(trimws(cell(19, 8)), "%Y%m%d"),
             BIRTH_ACCURACY = cell(11, 1), DEATHDATE = spx_date(trimws(cell(10, 8)), "%Y%m%d"),
             DEATH_ACCURACY = cell(2, 1), stringsAsFactors = FALSE)
}
)script";
}

}  // namespace spx::console
