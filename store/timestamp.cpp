#include "store/timestamp.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <glib.h> // GDateTime: calendar arithmetic and time zones

namespace quarrydex {

namespace {

struct DateTimeRef {
    GDateTime* dt;
    ~DateTimeRef() {
        if (dt) {
            g_date_time_unref(dt);
        }
    }
};

std::string format(GDateTime* dt, const char* pattern) {
    if (!dt) {
        return {};
    }
    gchar* text = g_date_time_format(dt, pattern);
    std::string out = text ? text : "";
    g_free(text);
    return out;
}

// Clamped first: converting a double beyond gint64 (1e300, an infinity, a NaN) to it
// would be undefined.
gint64 wholeUnixSeconds(const Timestamp& t) {
    return static_cast<gint64>(std::floor(t.clamped().unixSeconds()));
}

bool digits(std::string_view s, std::size_t from, std::size_t count) {
    for (std::size_t i = from; i < from + count; ++i) {
        if (s[i] < '0' || s[i] > '9') {
            return false;
        }
    }
    return true;
}

int number(std::string_view s, std::size_t from, std::size_t count) {
    int n = 0;
    for (std::size_t i = from; i < from + count; ++i) {
        n = n * 10 + (s[i] - '0');
    }
    return n;
}

// GLib's "%Y" writes the years before 1000 with fewer than four digits, which ISO 8601
// text (and so parseIsoUtc) does not allow; the fields are put together here instead.
std::string utcText(const Timestamp& t, bool withTime) {
    DateTimeRef dt{g_date_time_new_from_unix_utc(wholeUnixSeconds(t))};
    if (!dt.dt) {
        return {};
    }
    char text[32];
    int year = g_date_time_get_year(dt.dt), month = g_date_time_get_month(dt.dt),
        day = g_date_time_get_day_of_month(dt.dt);
    if (withTime) {
        std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02dZ", year, month, day,
                      g_date_time_get_hour(dt.dt), g_date_time_get_minute(dt.dt),
                      g_date_time_get_second(dt.dt));
    } else {
        std::snprintf(text, sizeof text, "%04d-%02d-%02d", year, month, day);
    }
    return text;
}

} // namespace

Timestamp Timestamp::now() {
    using namespace std::chrono;
    auto us = duration_cast<microseconds>(system_clock::now().time_since_epoch()).count();
    return fromUnix(static_cast<double>(us) / 1e6);
}

Timestamp Timestamp::clamped() const {
    if (std::isnan(sinceReference)) {
        return {0};
    }
    return {std::clamp(sinceReference, earliest, latest)};
}

std::string Timestamp::isoUtc() const {
    return utcText(*this, true);
}

std::optional<Timestamp> Timestamp::parseIsoUtc(std::string_view s) {
    // yyyy-MM-ddTHH:mm:ssZ, nothing more and nothing less.
    if (s.size() != 20 || s[4] != '-' || s[7] != '-' || s[10] != 'T' || s[13] != ':' ||
        s[16] != ':' || s[19] != 'Z' || !digits(s, 0, 4) || !digits(s, 5, 2) || !digits(s, 8, 2) ||
        !digits(s, 11, 2) || !digits(s, 14, 2) || !digits(s, 17, 2)) {
        return std::nullopt;
    }
    int seconds = number(s, 17, 2);
    if (seconds > 59) {
        return std::nullopt;
    }
    DateTimeRef dt{g_date_time_new_utc(number(s, 0, 4), number(s, 5, 2), number(s, 8, 2),
                                       number(s, 11, 2), number(s, 14, 2), seconds)};
    if (!dt.dt) {
        return std::nullopt;
    }
    return fromUnix(static_cast<double>(g_date_time_to_unix(dt.dt)));
}

std::string Timestamp::utcDate() const {
    return utcText(*this, false);
}

std::string Timestamp::formatLocal(const char* pattern) const {
    DateTimeRef dt{g_date_time_new_from_unix_local(wholeUnixSeconds(*this))};
    return format(dt.dt, pattern);
}

long Timestamp::localDayOrdinal() const {
    DateTimeRef dt{g_date_time_new_from_unix_local(wholeUnixSeconds(*this))};
    if (!dt.dt) {
        return 0;
    }
    GDate* date = g_date_new_dmy(static_cast<GDateDay>(g_date_time_get_day_of_month(dt.dt)),
                                 static_cast<GDateMonth>(g_date_time_get_month(dt.dt)),
                                 static_cast<GDateYear>(g_date_time_get_year(dt.dt)));
    long ordinal = g_date_valid(date) ? static_cast<long>(g_date_get_julian(date)) : 0;
    g_date_free(date);
    return ordinal;
}

} // namespace quarrydex
