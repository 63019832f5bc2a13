// Dates. A moment is a real: days since 30 December 1899, the time of day as its
// fraction. The calendar is the Gregorian one (the day count follows Howard
// Hinnant, "chrono-Compatible Low-Level Date Algorithms").

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "Files/Function/Arguments.h"
#include "Files/Function/Function_Math_Families.h"
#include "Files/Function/Function_Registry.h"
#include "Host/Host.h"

namespace {

constexpr int64_t kDaySeconds = 86400;
constexpr int64_t kUnixDay = 25569;  // 1 January 1970
constexpr double kYearDays = 365.25, kMonthDays = kYearDays / 12;
enum TimeZone : int32_t { ZONE_LOCAL = 0, ZONE_UTC = 1 };
int32_t g_zone = ZONE_LOCAL;

struct Moment {
    int64_t year;
    int32_t month, day, hour, minute, second;  // month and day from 1
};

bool IsLeap(int64_t year)
{
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

int32_t DaysInMonth(int64_t year, int32_t month)
{
    static constexpr int32_t kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return kDays[month - 1] + (month == 2 && IsLeap(year) ? 1 : 0);
}

int64_t DayNumber(int64_t year, int32_t month, int32_t day)
{
    const int64_t y = month <= 2 ? year - 1 : year;
    const int64_t era = (y >= 0 ? y : y - 399) / 400;
    const int64_t yearOfEra = y - era * 400;
    const int64_t dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
    const int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + dayOfEra - 719468 + kUnixDay;
}

double ToDate(const Moment& m)
{
    const int64_t seconds = m.hour * 3600 + m.minute * 60 + m.second;
    return static_cast<double>(DayNumber(m.year, m.month, m.day)) +
           static_cast<double>(seconds) / static_cast<double>(kDaySeconds);
}

// Seconds of a date, to the nearest one.
int64_t Seconds(double date)
{
    const double bounded = std::isfinite(date) ? std::clamp(date, -1e9, 1e9) : 0;
    return std::llround(bounded * static_cast<double>(kDaySeconds));
}

Moment FromDate(double date)
{
    const int64_t seconds = Seconds(date);
    const int64_t dayNumber =
        seconds >= 0 ? seconds / kDaySeconds : (seconds - kDaySeconds + 1) / kDaySeconds;
    const int32_t inDay = static_cast<int32_t>(seconds - dayNumber * kDaySeconds);
    const int64_t z = dayNumber - kUnixDay + 719468;
    const int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    const int64_t dayOfEra = z - era * 146097;
    const int64_t yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const int32_t dayOfYear =
        static_cast<int32_t>(dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100));
    const int32_t shifted = (5 * dayOfYear + 2) / 153;
    const int32_t month = shifted < 10 ? shifted + 3 : shifted - 9;
    return Moment{yearOfEra + era * 400 + (month <= 2 ? 1 : 0),
                  month,
                  dayOfYear - (153 * shifted + 2) / 5 + 1,
                  inDay / 3600,
                  inDay / 60 % 60,
                  inDay % 60};
}

double Now()
{
    if (g_zone == ZONE_UTC)
        return static_cast<double>(kUnixDay) +
               static_cast<double>(g_Host.clock.UnixSeconds()) / static_cast<double>(kDaySeconds);
    const HostLocalTime t = g_Host.clock.LocalTime();
    return ToDate(Moment{t.year, t.month, t.day, t.hour, t.minute, t.second});
}

bool ValidDay(int32_t year, int32_t month, int32_t day)
{
    return month >= 1 && month <= 12 && day >= 1 && day <= DaysInMonth(year, month);
}
bool ValidTime(int32_t hour, int32_t minute, int32_t second)
{
    return hour >= 0 && hour < 24 && minute >= 0 && minute < 60 && second >= 0 && second < 60;
}

// Moves a date by whole months; the day stays within its new month.
double AddMonths(double date, int64_t months)
{
    Moment m = FromDate(date);
    const int64_t total = m.year * 12 + m.month - 1 + months;
    m.year = total >= 0 ? total / 12 : (total - 11) / 12;
    m.month = static_cast<int32_t>(total - m.year * 12) + 1;
    m.day = std::min(m.day, DaysInMonth(m.year, m.month));
    return ToDate(m);
}

BUILTIN(F_date_current_datetime)
{
    SetReal(result, Now());
}

// Six numbers; -1 for a moment that the calendar doesn't have.
BUILTIN(F_date_create_datetime)
{
    const Moment m{ArgInt(args, argc, 0), ArgInt(args, argc, 1), ArgInt(args, argc, 2),
                   ArgInt(args, argc, 3), ArgInt(args, argc, 4), ArgInt(args, argc, 5)};
    const bool valid = ValidDay(static_cast<int32_t>(m.year), m.month, m.day) &&
                       ValidTime(m.hour, m.minute, m.second);
    SetReal(result, valid ? ToDate(m) : -1);
}

BUILTIN(F_date_valid_datetime)
{
    SetBool(result,
            ValidDay(ArgInt(args, argc, 0), ArgInt(args, argc, 1), ArgInt(args, argc, 2)) &&
                ValidTime(ArgInt(args, argc, 3), ArgInt(args, argc, 4), ArgInt(args, argc, 5)));
}

// One field of a date.
enum class Field { Year, Month, Week, Day, Hour, Minute, Second, Weekday, DayOfYear };

double FieldOf(const Moment& m, Field field)
{
    const int64_t dayNumber = DayNumber(m.year, m.month, m.day);
    const int64_t dayOfYear = dayNumber - DayNumber(m.year, 1, 1) + 1;
    switch (field) {
        case Field::Year:
            return static_cast<double>(m.year);
        case Field::Month:
            return m.month;
        case Field::Week:
            return static_cast<double>((dayOfYear - 1) / 7 + 1);
        case Field::Day:
            return m.day;
        case Field::Hour:
            return m.hour;
        case Field::Minute:
            return m.minute;
        case Field::Second:
            return m.second;
        // The first day of the count was a Saturday; Sunday is 0.
        case Field::Weekday:
            return static_cast<double>(((dayNumber + 6) % 7 + 7) % 7);
        case Field::DayOfYear:
            return static_cast<double>(dayOfYear);
    }
    return 0;
}

template <Field Which>
void GetField(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    SetReal(result, FieldOf(FromDate(ArgReal(args, argc, 0)), Which));
}

// Date, amount.
template <int Months>
void AddCalendar(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    SetReal(result, AddMonths(ArgReal(args, argc, 0),
                              static_cast<int64_t>(ArgInt(args, argc, 1)) * Months));
}
template <int UnitSeconds>
void AddUnits(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    SetReal(result, ArgReal(args, argc, 0) +
                        ArgReal(args, argc, 1) * UnitSeconds / static_cast<double>(kDaySeconds));
}

// The length between two dates in units of days.
template <const double& UnitDays>
void Span(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    SetReal(result, std::fabs(ArgReal(args, argc, 1) - ArgReal(args, argc, 0)) / UnitDays);
}
constexpr double kYear = kYearDays, kMonth = kMonthDays, kWeek = 7, kDay = 1, kHour = 1.0 / 24,
                 kMinute = 1.0 / 1440, kSecond = 1.0 / 86400;

double Order(int64_t a, int64_t b)
{
    return a < b ? -1 : a > b ? 1 : 0;
}
int64_t WholeDay(double date)
{
    return static_cast<int64_t>(std::floor(date));
}

BUILTIN(F_date_compare_datetime)
{
    SetReal(result, Order(Seconds(ArgReal(args, argc, 0)), Seconds(ArgReal(args, argc, 1))));
}
BUILTIN(F_date_compare_date)
{
    SetReal(result, Order(WholeDay(ArgReal(args, argc, 0)), WholeDay(ArgReal(args, argc, 1))));
}
BUILTIN(F_date_date_of)
{
    SetReal(result, std::floor(ArgReal(args, argc, 0)));
}
BUILTIN(F_date_time_of)
{
    const double date = ArgReal(args, argc, 0);
    SetReal(result, date - std::floor(date));
}
BUILTIN(F_date_is_today)
{
    SetBool(result, WholeDay(ArgReal(args, argc, 0)) == WholeDay(Now()));
}
BUILTIN(F_date_leap_year)
{
    SetBool(result, IsLeap(FromDate(ArgReal(args, argc, 0)).year));
}
BUILTIN(F_date_days_in_month)
{
    const Moment m = FromDate(ArgReal(args, argc, 0));
    SetReal(result, DaysInMonth(m.year, m.month));
}
BUILTIN(F_date_days_in_year)
{
    SetReal(result, IsLeap(FromDate(ArgReal(args, argc, 0)).year) ? 366 : 365);
}

// Day and month as the game's home writes them.
BUILTIN(F_date_date_string)
{
    const Moment m = FromDate(ArgReal(args, argc, 0));
    char text[48];
    std::snprintf(text, sizeof text, "%02d/%02d/%04lld", m.day, m.month,
                  static_cast<long long>(m.year));
    VXCreateString(&result, text);
}
BUILTIN(F_date_time_string)
{
    const Moment m = FromDate(ArgReal(args, argc, 0));
    char text[48];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d", m.hour, m.minute, m.second);
    VXCreateString(&result, text);
}
BUILTIN(F_date_datetime_string)
{
    const Moment m = FromDate(ArgReal(args, argc, 0));
    char text[64];
    std::snprintf(text, sizeof text, "%02d/%02d/%04lld %02d:%02d:%02d", m.day, m.month,
                  static_cast<long long>(m.year), m.hour, m.minute, m.second);
    VXCreateString(&result, text);
}

BUILTIN(F_date_get_timezone)
{
    SetReal(result, g_zone);
}
BUILTIN(F_date_set_timezone)
{
    g_zone = ArgInt(args, argc, 0) == ZONE_UTC ? ZONE_UTC : ZONE_LOCAL;
}

constexpr BuiltinRow kRows[] = {
    {"date_current_datetime", F_date_current_datetime, 0},
    {"date_create_datetime", F_date_create_datetime, 6},
    {"date_valid_datetime", F_date_valid_datetime, 6},
    {"date_get_year", GetField<Field::Year>, 1},
    {"date_get_month", GetField<Field::Month>, 1},
    {"date_get_week", GetField<Field::Week>, 1},
    {"date_get_day", GetField<Field::Day>, 1},
    {"date_get_hour", GetField<Field::Hour>, 1},
    {"date_get_minute", GetField<Field::Minute>, 1},
    {"date_get_second", GetField<Field::Second>, 1},
    {"date_get_weekday", GetField<Field::Weekday>, 1},
    {"date_get_day_of_year", GetField<Field::DayOfYear>, 1},
    {"date_inc_year", AddCalendar<12>, 2},
    {"date_inc_month", AddCalendar<1>, 2},
    {"date_inc_week", AddUnits<604800>, 2},
    {"date_inc_day", AddUnits<86400>, 2},
    {"date_inc_hour", AddUnits<3600>, 2},
    {"date_inc_minute", AddUnits<60>, 2},
    {"date_inc_second", AddUnits<1>, 2},
    {"date_year_span", Span<kYear>, 2},
    {"date_month_span", Span<kMonth>, 2},
    {"date_week_span", Span<kWeek>, 2},
    {"date_day_span", Span<kDay>, 2},
    {"date_hour_span", Span<kHour>, 2},
    {"date_minute_span", Span<kMinute>, 2},
    {"date_second_span", Span<kSecond>, 2},
    {"date_compare_datetime", F_date_compare_datetime, 2},
    {"date_compare_date", F_date_compare_date, 2},
    {"date_date_of", F_date_date_of, 1},
    {"date_time_of", F_date_time_of, 1},
    {"date_is_today", F_date_is_today, 1},
    {"date_leap_year", F_date_leap_year, 1},
    {"date_days_in_month", F_date_days_in_month, 1},
    {"date_days_in_year", F_date_days_in_year, 1},
    {"date_date_string", F_date_date_string, 1},
    {"date_time_string", F_date_time_string, 1},
    {"date_datetime_string", F_date_datetime_string, 1},
    {"date_get_timezone", F_date_get_timezone, 0},
    {"date_set_timezone", F_date_set_timezone, 1},
};

}  // namespace

void Function_Math_RegisterDates()
{
    g_zone = ZONE_LOCAL;
    Function_AddRows(kRows);
}
