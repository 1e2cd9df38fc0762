#pragma once
// A moment in time as seconds (with fraction) since 2001-01-01 00:00:00 UTC, the
// form the data file stores. Backups use ISO 8601 text instead; the conversions are here
// so the two encodings are never mixed up by hand.

#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace quarrydex {

// Dates are kept within the years 1 to 9999, the range ISO 8601 text and the calendar
// code can write. A date outside it (possible only by editing the data file) is clamped to
// the nearer end when the data file is read, and every conversion to text or to a calendar
// day clamps the same way, so the data file, backups and the CSV export agree on it.
struct Timestamp {
    double sinceReference = 0; // seconds since 2001-01-01 00:00:00 UTC

    static constexpr double unixOfReference = 978307200.0;
    static constexpr double earliest = -63113904000.0; // 0001-01-01T00:00:00Z
    static constexpr double latest = 252423993599.0;   // 9999-12-31T23:59:59Z

    static Timestamp now();
    static Timestamp fromUnix(double unixSeconds) { return {unixSeconds - unixOfReference}; }
    double unixSeconds() const { return sinceReference + unixOfReference; }
    Timestamp plusSeconds(double s) const { return {sinceReference + s}; }
    // Within earliest ... latest; infinities go to the nearer end, and a NaN (which no file
    // can hold) to the reference date.
    Timestamp clamped() const;

    // "2026-10-18T12:00:00Z": UTC, whole seconds (a fraction is dropped).
    std::string isoUtc() const;
    // Only the exact form isoUtc() writes is accepted; a fraction or an offset is not.
    static std::optional<Timestamp> parseIsoUtc(std::string_view text);

    // "yyyy-MM-dd" of the UTC calendar day.
    std::string utcDate() const;
    // Local time with a strftime-style pattern (ASCII digits, 24-hour clock).
    std::string formatLocal(const char* pattern) const;
    // Days since the start of the common era in the local calendar; 1 for 0001-01-01.
    long localDayOrdinal() const;

    auto operator<=>(const Timestamp&) const = default;
};

} // namespace quarrydex
