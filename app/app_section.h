#pragma once
// The sidebar's sections: what the window can show, in sidebar and "Go" menu order. Each
// section is identified by its raw value, which is also how the application model and the
// screens name it.

#include <array>
#include <optional>
#include <string_view>

namespace quarrydex {

enum class AppSection { identify, library, favorites, collection, history, backup, about };

// Every section in declaration order (the sidebar's and the "Go" menu's order).
const std::array<AppSection, 7>& allAppSections();

std::string_view rawValue(AppSection section);
// The text shown in the sidebar and the "Go" menu.
std::string_view title(AppSection section);
// A symbol-image name; the interface maps it to an icon of the same meaning.
std::string_view symbol(AppSection section);
// "Find", "Mine" or "Help".
std::string_view sidebarGroup(AppSection section);
// None for anything but an exact raw value.
std::optional<AppSection> appSectionFromRaw(std::string_view raw);

} // namespace quarrydex
