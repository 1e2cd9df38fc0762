#include "app/specimen_facts.h"

#include "app/qt_values.h"

#include <QStringList>
#include <QVariantList>

#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace quarrydex {

namespace {

QString orNotListed(const std::optional<std::string>& value) {
    return value && !value->empty() ? qs(*value) : QStringLiteral("Not listed");
}

QString yesNo(bool value) {
    return value ? QStringLiteral("Yes") : QStringLiteral("No");
}

QVariantMap fact(const QString& label, const QString& value) {
    return {{QStringLiteral("label"), label}, {QStringLiteral("value"), value}};
}

// The library species a look-alike names: the same name or id, ignoring case.
const Specimen* speciesNamed(const std::string& name, const SpecimenLibrary& library) {
    const std::string wanted = lowercased(name);
    if (const Specimen* byId = library.specimen(wanted)) {
        return byId;
    }
    for (const Specimen& s : library.specimens()) {
        if (lowercased(s.name) == wanted) {
            return &s;
        }
    }
    return nullptr;
}

} // namespace

QString matchShareText(double confidence) {
    const double share = std::clamp(confidence, 0.0, 0.95);
    return QStringLiteral("Match share: ") +
           QString::number(static_cast<int>(std::round(share * 100))) +
           QStringLiteral("% of the library");
}

QVariantMap specimenFacts(const Specimen* specimen, const SpecimenLibrary& library,
                          std::optional<double> confidence) {
    if (!specimen) {
        return {{QStringLiteral("found"), false}};
    }
    const Specimen& s = *specimen;

    QStringList colors;
    for (const std::string& c : s.colors) {
        colors.append(qs(c));
    }
    const QVariantList facts{
        fact(QStringLiteral("Hardness"), qs(s.hardnessText())),
        fact(QStringLiteral("Composition"),
             s.formula && !s.formula->empty() ? qs(*s.formula) : QStringLiteral("Varies (rock)")),
        fact(QStringLiteral("Crystal system"), orNotListed(s.crystalSystem)),
        fact(QStringLiteral("Specific gravity"), orNotListed(s.specificGravity)),
        fact(QStringLiteral("Luster"), qs(s.luster)),
        fact(QStringLiteral("Streak"), qs(s.streak)),
        fact(QStringLiteral("Cleavage"), orNotListed(s.cleavage)),
        fact(QStringLiteral("Magnetic"), yesNo(s.magnetic)),
        fact(QStringLiteral("Fizzes in acid"), yesNo(s.fizzes)),
        fact(QStringLiteral("Colors"), colors.join(QStringLiteral(", "))),
    };

    QStringList localities;
    for (const std::string& place : s.localities) {
        localities.append(qs(place));
    }
    QVariantList lookAlikes;
    for (const LookAlike& look : s.lookAlikes) {
        const Specimen* other = speciesNamed(look.name, library);
        lookAlikes.append(QVariantMap{{QStringLiteral("name"), qs(look.name)},
                                      {QStringLiteral("tip"), qs(look.tip)},
                                      {QStringLiteral("specimenId"),
                                       other && other->id != s.id ? qs(other->id) : QString()}});
    }

    return {
        {QStringLiteral("found"), true},
        {QStringLiteral("specimenId"), qs(s.id)},
        {QStringLiteral("name"), qs(s.name)},
        {QStringLiteral("categoryTitle"), qs(info(s.category).singular)},
        {QStringLiteral("group"), qs(s.group)},
        {QStringLiteral("colorHex"), s.colorHex.empty() ? QString() : qs(s.colorHex.front())},
        {QStringLiteral("birthstoneText"), s.birthstone && !s.birthstone->empty()
                                               ? qs(*s.birthstone) + QStringLiteral(" birthstone")
                                               : QString()},
        {QStringLiteral("matchShareText"),
         confidence && *confidence >= 0 ? matchShareText(*confidence) : QString()},
        {QStringLiteral("facts"), facts},
        {QStringLiteral("summary"), qs(s.summary)},
        {QStringLiteral("history"), qs(s.history)},
        {QStringLiteral("uses"), qs(s.uses)},
        {QStringLiteral("care"), qs(s.care)},
        {QStringLiteral("localities"), localities},
        {QStringLiteral("lookAlikes"), lookAlikes},
    };
}

} // namespace quarrydex
