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

/* Splits a date number; each pointer may be null. A whole second that was stored comes back as that
   second; a time between two seconds is rounded up, in the last instant of a day to 24:00:00 of that
   day. */
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
   S seconds between the times of day (each rounded as in qvDateToYMD; days ignored, so it is negative
   across midnight); 0 for other letters. */
QVAPI int QVCALL qvDateDiff(const char* part, double date1, double date2) QVNOEXCEPT;

/* QV_MONDAY (0) .. QV_SUNDAY (6). Counted from date + 693593, truncated: a date before day 0 with a time of
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

/* ---- Text ------------------------------------------------------------------------------------ */

/* The `format` of these functions is the order of the fields: QV_DATE_YMD (0) year month day, QV_DATE_MDY
   (1) month day year, QV_DATE_DMY (2) day month year; others count as 0.

   A date text is cut into groups of letters and groups of digits (at most 8, of which the first 8
   characters count); everything else separates. The first three groups are the date, the next ones
   hour, minute and second; a last group that begins with P adds 12 to an hour below 12, an AM marker
   changes nothing. A month may be named (its first three letters, in either case, count). One or two
   groups are the compact forms: yymmdd or with format 0 yyyymmdd, mmddyyyy with format 1, ddmmyyyy
   with format 2, then hhmmss. A text that begins with a separator has an empty first group and is
   invalid in most cases.

   A time text: up to three numbers from the first digit on; a number ends at any other character and
   after two digits, so two separators in a row leave a field 0. A P anywhere adds 12 to an hour below
   12. A text without digits is 0:00:00 and valid. */

/* Stores the six fields (each pointer may be null), also when invalid. 1 valid, 0 invalid, -1 null
   text (nothing stored). */
QVAPI int QVCALL qvDateStrToYMD(const char* text, int format, int* year, int* month, int* day, int* hour,
                                int* minute, int* second) QVNOEXCEPT;

/* The date number of a text; 0.0 when invalid. */
QVAPI double QVCALL qvDateStrToDate(const char* text, int format) QVNOEXCEPT;

/* 1 valid, 0 invalid, -1 null text. */
QVAPI int QVCALL qvDateStrValidate(const char* text, int format) QVNOEXCEPT;

/* Stores the three fields (each pointer may be null), also when invalid. 1 valid, 0 invalid, -1 null
   text (nothing stored). */
QVAPI int QVCALL qvTimeStrToHMS(const char* text, int* hour, int* minute, int* second) QVNOEXCEPT;

/* The fraction of a day of a time text; 0.0 when invalid. */
QVAPI double QVCALL qvTimeStrToTime(const char* text) QVNOEXCEPT;

/* Prints a date by a picture; returns the length of the text. Runs of these letters, in either case,
   are fields; all else is copied:
     Y  year: a run of four prints four digits (years above 9999 print 9999, below 0 0000), any other
        run the last two of them
     M  month; minute when an hour came before, with no M or N since
     D day, H hour, N minute, S second, as the month: two digits, one for a single letter where that
        is enough
     A  a marker AM/PM or A/P: its first part before noon, its second from noon on, and H counts 1 to
        12 in the whole picture. A marker takes five characters of the picture, three when a "/"
        follows the A; of a marker that the end of the picture cuts short, the characters that are
        there are written ("AM" prints nothing in the afternoon).
   `out` needs room for the length of the picture, one more for each field of a single
   letter, and the terminator. -1 when out or picture is null
   (an empty text when only the picture is). The picture must not lie in `out`. */
QVAPI int QVCALL qvFormatDate(double date, const char* picture, char* out) QVNOEXCEPT;

/* Sets the process-wide order of the fields in listings and reports (initially QV_DATE_YMD); values other
   than QV_DATE_YMD, QV_DATE_MDY and QV_DATE_DMY are ignored. */
QVAPI void QVCALL qvSetDefaultDateFormat(int format) QVNOEXCEPT;

/* ---- Convenience wrappers -------------------------------------------------------------------- */

/* The functions above with 16-bit parts and numbered text formats. A "Julian" value is the date number.

   Date formats: 1 YY-MM-DD, 2 YYYY-MM-DD, 3 MM-DD-YY, 4 MM-DD-YYYY, 5 DD-MM-YY, 6 DD-MM-YYYY, with the
   caller's separator in place of the dash; 7 to 12 the same without a separator. Time formats:
   1 HH-NN-SS, 2 HH-NN, 3 HHNNSS, 4 HHNN. For parsing a format only tells the order of the fields;
   other codes are year month day. */

/* The date number of a day, the fraction of a day of a time; 0.0 when invalid. */
QVAPI double QVCALL qvYMDToJulian(short year, short month, short day) QVNOEXCEPT;
QVAPI double QVCALL qvHMSToJulian(short hour, short minute, short second) QVNOEXCEPT;

/* The parts of a date number, as qvDateToYMD. Nothing is stored unless all three pointers are given. Years
   saturate at 16 bits. */
QVAPI void QVCALL qvJulianToYMD(double date, short* year, short* month, short* day) QVNOEXCEPT;
QVAPI void QVCALL qvJulianToHMS(double date, short* hour, short* minute, short* second) QVNOEXCEPT;

/* QV_MONDAY (0) .. QV_SUNDAY (6), as qvDayOfWeek. */
QVAPI int QVCALL qvJulianDOW(double date) QVNOEXCEPT;

/* Days from the first date to the second. An invalid date counts as day 0. */
QVAPI int QVCALL qvJulianDif(double date1, double date2) QVNOEXCEPT;
QVAPI int QVCALL qvYMDDif(short y1, short m1, short d1, short y2, short m2, short d2) QVNOEXCEPT;
QVAPI int QVCALL qvDateTxtDif(const char* text1, const char* text2, short code1, short code2) QVNOEXCEPT;

/* Seconds from the first time of day to the second. An invalid time counts as 0:00:00; the last
   arguments of the text form are ignored. */
QVAPI int QVCALL qvHMSDif(short h1, short m1, short s1, short h2, short m2, short s2) QVNOEXCEPT;
QVAPI int QVCALL qvTimeTxtDif(const char* text1, const char* text2, int unused1, int unused2) QVNOEXCEPT;

/* As qvDateStrToDate, qvDateStrValidate and qvTimeStrToTime; the last argument of the time form is
   ignored. */
QVAPI double QVCALL qvDateTxtToJulian(const char* text, short code) QVNOEXCEPT;
QVAPI int QVCALL qvDateTxtVal(const char* text, short code) QVNOEXCEPT;
QVAPI double QVCALL qvTimeTxtToJulian(const char* text, int unused) QVNOEXCEPT;

/* Print in a numbered format; the separator may have any length and becomes part of the picture
   (letters of qvFormatDate in it are fields); formats without one ignore it. The length of the text;
   0 and an empty text for other codes; -1 for a null out or a null separator where one is used; -3
   when memory for the picture runs out. `out` needs the room that qvFormatDate asks for. */
QVAPI int QVCALL qvJulianToDateTxt(double date, short code, const char* separator, char* out) QVNOEXCEPT;
QVAPI int QVCALL qvJulianToTimeTxt(double date, short code, const char* separator, char* out) QVNOEXCEPT;

QV_END_DECLS

/* The bar compression, which goes by the calendar, stands in a header of its own. */
#include "qvlib60/dates/compress.h"

#endif
