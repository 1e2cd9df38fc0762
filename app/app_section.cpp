#include "app/app_section.h"

namespace quarrydex {

namespace {

struct SectionInfo {
    AppSection section;
    std::string_view raw;
    std::string_view title;
    std::string_view symbol;
    std::string_view group;
};

constexpr std::array<SectionInfo, 7> sectionInfo{{
    {AppSection::identify, "identify", "Identify", "camera.viewfinder", "Find"},
    {AppSection::library, "library", "Library", "books.vertical", "Find"},
    {AppSection::favorites, "favorites", "Favorites", "star", "Find"},
    {AppSection::collection, "collection", "My Collection", "square.grid.2x2", "Mine"},
    {AppSection::history, "history", "History", "clock.arrow.circlepath", "Mine"},
    {AppSection::backup, "backup", "Backup", "externaldrive", "Mine"},
    {AppSection::about, "about", "About & Help", "questionmark.circle", "Help"},
}};

const SectionInfo& infoOf(AppSection s) {
    return sectionInfo[static_cast<std::size_t>(s)];
}

} // namespace

const std::array<AppSection, 7>& allAppSections() {
    static constexpr std::array<AppSection, 7> all{
        AppSection::identify, AppSection::library, AppSection::favorites, AppSection::collection,
        AppSection::history,  AppSection::backup,  AppSection::about};
    return all;
}

std::string_view rawValue(AppSection section) {
    return infoOf(section).raw;
}
std::string_view title(AppSection section) {
    return infoOf(section).title;
}
std::string_view symbol(AppSection section) {
    return infoOf(section).symbol;
}
std::string_view sidebarGroup(AppSection section) {
    return infoOf(section).group;
}

std::optional<AppSection> appSectionFromRaw(std::string_view raw) {
    for (const auto& info : sectionInfo) {
        if (info.raw == raw) {
            return info.section;
        }
    }
    return std::nullopt;
}

} // namespace quarrydex
