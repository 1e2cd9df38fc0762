#pragma once
// The maker's names, the version and the web address, in one place. Backups copy the
// company name into their "publisher" key; the about panel and the self-test report show
// the rest.

#include <string_view>

namespace quarrydex {

struct Branding {
    static constexpr std::string_view appName = "Quarrydex";
    static constexpr std::string_view company = "Fernwick";
    static constexpr std::string_view shortCompany = "Orlo";
    static constexpr std::string_view byline = "by Fernwick";
    static constexpr std::string_view version = "2.0";
    static constexpr std::string_view build = "200";
    static constexpr std::string_view website = "https://fernwick.example/quarrydex";
    static constexpr std::string_view websiteText = "fernwick.example";
    static constexpr std::string_view copyright = "© 2026 Fernwick. All rights reserved.";
};

} // namespace quarrydex
