# Makes a studbook, and compares the survival that spx and R's package survival find in it.
#   Rscript survival.R PROGRAM DIRECTORY SEED
library(survival)
arguments <- commandArgs(TRUE)
program <- arguments[1]
directory <- arguments[2]
seed <- as.integer(arguments[3])
set.seed(seed)
dir.create(directory)

# Lives in days after 2000-01-01. Some animals come from the wild at some age, some go, some of those come back.
# The third studbook has few deaths at equal ages: the exact test takes long with many.
count <- if (seed == 3) 150 else 400
infant_deaths <- if (seed == 3) 0 else 0.2
until <- 9000
birth <- sort(sample(0:7000, count, TRUE))
span <- ifelse(runif(count) < infant_deaths, sample(0:40, count, TRUE), round(rweibull(count, 1.6, 3000)))
death <- birth + span
sex <- sample(c("male", "female"), count, TRUE)
span_left <- pmin(death, until) - birth
wild <- runif(count) < 0.3 & span_left > 10
entry <- ifelse(wild, birth + 1 + floor(runif(count) * (span_left - 2)), birth)
there <- pmin(death, until) - entry
leaves <- runif(count) < 0.25 & there > 20
left <- entry + 1 + floor(runif(count) * (there - 10))
# Without returns R's survdiff, which knows no late entries, can judge the captive-born too.
returns <- leaves & seed %% 2 == 1 & runif(count) < 0.4 & pmin(death, until) - left > 5
back <- left + 1 + floor(runif(count) * (pmin(death, until) - left - 3))
dies <- death <= until

day <- function(days) format(as.Date("2000-01-01") + days)
animals <- data.frame(id = seq_len(count), sire = ifelse(wild, "WILD", "UNK"), dam = ifelse(wild, "WILD", "UNK"),
                      sex, birth_date = day(birth), birth_location = ifelse(wild, "9", "1"),
                      death_date = ifelse(dies, day(death), ""),
                      death_event = ifelse(dies, "death", ""),
                      origin = ifelse(wild, "wild-born", "captive-born"))
happen <- function(which, days, event, location) {
  data.frame(id = which(which), date = day(days[which]), event = rep(event, sum(which)),
             location = rep(location, sum(which)))
}
events <- rbind(happen(wild, entry, "from wild", "1"), happen(leaves, left, "population out", "9"),
                happen(returns, back, "population in", "1"))
write.csv(animals, file.path(directory, "animals.csv"), row.names = FALSE, quote = FALSE)
write.csv(events[order(events$date), ], file.path(directory, "events.csv"), row.names = FALSE, quote = FALSE)

# What R makes of the same lives: a row per stay. A stillbirth is at risk for half a day.
stay <- function(which, from, to, died) {
  data.frame(start = (from - birth)[which], stop = pmax((to - birth)[which], (from - birth)[which] + 0.5),
             died = died[which], sex = sex[which], wild = wild[which])
}
last <- pmin(death, until)
stays <- rbind(stay(!leaves, entry, last, dies), stay(leaves, entry, left, rep(FALSE, count)),
               stay(returns, back, last, dies))

compared <- 0
same <- function(what, found, expected) {
  found <- as.numeric(found)
  expected <- as.numeric(expected)
  wrong <- is.na(found) != is.na(expected) | (!is.na(found) & abs(found - expected) > 1e-9 * pmax(1, abs(expected)))
  if (length(found) != length(expected) || any(wrong)) {
    at <- which(wrong)[1]
    stop(what, " differs: ", length(found), " values, ", length(expected), " expected; at ", at, " ",
         format(found[at], digits = 15), " instead of ", format(expected[at], digits = 15))
  }
  compared <<- compared + length(expected)
}
spx <- function(...) {
  lines <- system2(program, c("--studbook", directory, "survival", "--unit", "days", "--format", "csv",
                              "--until", day(until), ...), stdout = TRUE, stderr = FALSE)
  read.csv(text = lines, na.strings = "")
}

compare <- function(stays, ...) {
  fit <- survfit(Surv(start, stop, died) ~ sex, stays, conf.type = "log-log")
  expected <- summary(fit, censored = TRUE)
  found <- spx("--by", "sex", ...)
  same("group", found$group == "male", expected$strata == "sex=male")
  for (column in list(c("time", "time"), c("at_risk", "n.risk"), c("deaths", "n.event"), c("censored", "n.censor"),
                      c("survival", "surv"), c("std_error", "std.err"), c("lower", "lower"), c("upper", "upper"))) {
    same(column[1], found[[column[1]]], expected[[column[2]]])
  }
  found <- spx("--by", "sex", "--summary", ...)
  table <- summary(fit, rmean = "individual")$table
  for (column in list(c("median", "median"), c("median_lower", "0.95LCL"), c("median_upper", "0.95UCL"),
                      c("mean", "rmean"), c("mean_error", "se(rmean)"), c("deaths", "events"))) {
    same(column[1], found[[column[1]]], table[, column[2]])
  }
  found
}

# With delayed entry the log-rank test is the score test of Cox's model with exact ties.
found <- compare(stays)
if (seed == 3) {
  score <- coxph(Surv(start, stop, died) ~ sex, stays, ties = "exact")$score
  same("chi-square", found$chi_square[1], score)
  same("p", found$p[1], pchisq(score, 1, lower.tail = FALSE))
}

# survdiff takes animals from birth on.
captive <- stays[!stays$wild & stays$start == 0, ]
alive <- spx("--by", "sex", "--summary", "--origin", "captive-born")
test <- survdiff(Surv(stop, died) ~ sex, captive)
if (!any(returns & !wild)) {
  same("survdiff", alive$chi_square[1], test$chisq)
  same("expected", alive$expected, test$exp)
}
cat("seed", arguments[3], "-", compared, "values agree\n")
