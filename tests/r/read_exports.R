# Compares what R reads from the exported tables with the table that was loaded.
#   Rscript read_exports.R SOURCE.csv DIRECTORY
arguments <- commandArgs(TRUE)
source(file.path(arguments[2], "load_studbook.R"))
animals <- read.csv(arguments[1], colClasses = "character", check.names = FALSE,
                    na.strings = character(0), encoding = "UTF-8")
names(animals)[names(animals) == "yob"] <- "birth_date"
for (name in setdiff(c("death_date", "birth_location"), names(animals))) animals[[name]] <- ""
checked <- 0
same <- function(what, found, expected) {
  if (!identical(unname(found), unname(expected))) {
    at <- which(!mapply(identical, found, expected))[1]
    stop(what, " differs at row ", at, ": ", found[at], " instead of ", expected[at])
  }
  checked <<- checked + length(expected)
}
day <- function(text) {
  text <- ifelse(nchar(text) == 4, paste0(text, "-01-01"), text)
  as.Date(ifelse(nchar(text) == 7, paste0(text, "-01"), ifelse(text == "", NA, text)))
}
is_pseudo <- function(id) grepl("^(COLONY|GROUP|HERD|MULT|UNK|WILD|P)", id, ignore.case = TRUE)
# A parent is written when an animal of the table has that ID; all others are pseudo individuals.
parent <- function(ids) ifelse(ids %in% animals$id & !is_pseudo(ids), ids, NA)

real <- animals[!is_pseudo(animals$id), ]
pedigree <- read_pedigree()
stopifnot(ncol(pedigree) == 12, nrow(pedigree) == nrow(real))
# Rows come in the byte order of the IDs; duplicates keep the order of the table.
real <- real[order(real$id, method = "radix"), ]
same("ID", pedigree$ID, real$id)
same("DAM", pedigree$DAM, parent(real$dam))
same("SIRE", pedigree$SIRE, parent(real$sire))
same("BIRTHDATE", pedigree$BIRTHDATE, day(real$birth_date))
same("DEATHDATE", pedigree$DEATHDATE, day(real$death_date))
sites <- !grepl("^[0-9.]+$", real$birth_location)
site <- ifelse(real$birth_location == "", NA, real$birth_location)
same("BIRTHSITE", pedigree$BIRTHSITE[sites], site[sites])

dat <- read_dat()
trf <- read_trf()
rows <- match(animals$id, dat$ID)
stopifnot(!anyNA(rows), nrow(trf) == 2 * nrow(dat))
first <- !duplicated(animals$id)
same("DAT BIRTHDATE", dat$BIRTHDATE[rows[first]], day(animals$birth_date[first]))
same("DAT DEATHDATE", dat$DEATHDATE[rows[first]], day(animals$death_date[first]))
for (side in c("dam", "sire")) {
  known <- first & animals[[side]] %in% animals$id
  same(paste("DAT", side), dat[[toupper(side)]][rows[known]], animals[[side]][known])
}
same("TRF births", trf$DATE[trf$EVENT == "B"], dat$BIRTHDATE)
same("TRF deaths", trf$DATE[trf$EVENT == "D"], dat$DEATHDATE)

fields <- read_fields()
ended <- animals[animals$death_date != "" & !is_pseudo(animals$id), ]
stopifnot(nrow(fields) == nrow(ended))
if (nrow(ended) > 0) {
  stopifnot(ncol(fields) == 12)
  same("fields BIRTHDATE", fields$BIRTHDATE, day(ended$birth_date))
  died <- !is.na(fields$DEATHDATE)
  same("fields DEATHDATE", fields$DEATHDATE[died], day(ended$death_date)[died])
}
cat(checked, "values agree\n")
