#pragma once
// What the specimen detail screen shows of one species, as display-ready texts: the header
// lines, the fact tiles in their order, the text sections, the places and the look-alikes
// (with the library id of those that are species of the library).
//
// Texts for values the library leaves open: "Varies (rock)" for a species without a formula,
// "Not listed" for a missing crystal system, specific gravity or cleavage; "Yes" or "No" for
// "Magnetic" and "Fizzes in acid"; colours joined with ", ".

#include "library/specimen_library.h"

#include <QString>
#include <QVariantMap>

#include <optional>

namespace quarrydex {

// {found, specimenId, name, categoryTitle, group, colorHex, birthstoneText ("June birthstone"
// or ""), matchShareText ("Match share: 42% of the library" when `confidence` is given, else
// ""), facts: [{label, value}], summary, history, uses, care, localities: [text],
// lookAlikes: [{name, tip, specimenId ("" when not in the library)}]}.
// {found: false} when `specimen` is null.
QVariantMap specimenFacts(const Specimen* specimen, const SpecimenLibrary& library,
                          std::optional<double> confidence = std::nullopt);

// "Match share: " + the share as a whole percentage (never above 95, as the identify screen
// shows it) + "% of the library".
QString matchShareText(double confidence);

} // namespace quarrydex
