/* Dates and times: date numbers, calendar arithmetic, parsing, formatting, convenience wrappers.

   A date number is a double: its whole part counts days, 30 December 1899 being 0 and 1 January 1900
   being 2 (the serial day of spreadsheets); its fraction is the time of day. Before day 0 the time
   is subtracted: -1.25 is 29 December 1899, 06:00. A whole part of 0 is a bare time of day. The
   calendar is the proleptic Gregorian one and meant for years from 101 on.

   Two-digit years: a year below the cutoff (initially 20; negative years too) means year + 2000,
   another below 100 means year + 1900, wherever a year is taken as a number or read from text.

   Any double is answered: a not-a-number counts as 0, years saturate at the range of an int. A null
   text or picture is -1 (0.0 from functions that return a double). */
#ifndef QVLIB60_DATES_H
#define QVLIB60_DATES_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

/* ---- Calendar -------------------------------------------------------------------------------- */

/* The date number; 0.0 when date or time is invalid. Year, month and day all 0 give the time alone. */
QVAPI double QVCALL qvYMDtoDate(int year, int month, int day, int hour, int minute, int second) QVNOEXCEPT;

/* Splits a date number; each pointer may be null. The time is rounded up to a whole second, which
   may be one more than was stored and, in the last instant of a day, 24:00:00 of that day. */
QVAPI void QVCALL qvDateToYMD(double date, int* year, int* month, int* day, int* hour, int* minute,
                              int* second) QVNOEXCEPT;

/* The date number of yyyymmdd, yymmdd (two-digit years) or yyymmdd (years since 1900: 1230115 is
   15 January 2023); 0.0 when invalid. */
QVAPI double QVCALL qvNumToDate(int yyyymmdd) QVNOEXCEPT;

/* The fraction of a day of hhmmss; 0.0 when invalid. */
QVAPI double QVCALL qvNumToTime(int hhmmss) QVNOEXCEPT;

/* One part of a date by the first letter of `part`, in either case: Y year, M month, D day, H hour,
   N minute, S second; 0 for other letters. */
QVAPI int QVCALL qvDatePart(const char* part, double date) QVNOEXCEPT;

/* From date1 to date2 by the first letter of `part`, in either case: D days (times of day ignored),
   S seconds between the times of day (days ignored, so it is negative across midnight); 0 for other
   letters. */
QVAPI int QVCALL qvDateDiff(const char* part, double date1, double date2) QVNOEXCEPT;

/* 0 Monday .. 6 Sunday. Counted from date + 693593, truncated: a date before day 0 with a time of
   day belongs to the day before. */
QVAPI int QVCALL qvDayOfWeek(double date) QVNOEXCEPT;

/* 1 for a leap year, else 0. */
QVAPI int QVCALL qvIsLeapYear(int year) QVNOEXCEPT;

/* The date number of 31 December. */
QVAPI double QVCALL qvYearToDays(int year) QVNOEXCEPT;

/* 1 when the date is one of the calendar (or all zero) and the time is one of a day, else 0. */
QVAPI int QVCALL qvDateValidate(int year, int month, int day, int hour, int minute, int second) QVNOEXCEPT;

/* Sets the process-wide two-digit-year cutoff; values outside 0 .. 99 are ignored. */
QVAPI void QVCALL qvSet2DigitYearCutoff(int cutoff) QVNOEXCEPT;

QV_END_DECLS

#endif
