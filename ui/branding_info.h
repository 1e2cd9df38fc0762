#pragma once
// The maker's names, version and web address for QML (`Branding`), read from the one set of
// constants the whole program shares.

#include "backup/branding.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace quarrydex::ui {

class BrandingInfo : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(Branding)
    QML_SINGLETON
    Q_PROPERTY(QString appName READ appName CONSTANT)
    Q_PROPERTY(QString company READ company CONSTANT)
    Q_PROPERTY(QString shortCompany READ shortCompany CONSTANT)
    Q_PROPERTY(QString byline READ byline CONSTANT)
    Q_PROPERTY(QString version READ version CONSTANT)
    Q_PROPERTY(QString build READ build CONSTANT)
    Q_PROPERTY(QString website READ website CONSTANT)
    Q_PROPERTY(QString websiteText READ websiteText CONSTANT)
    Q_PROPERTY(QString copyright READ copyright CONSTANT)
    // "Orlo Quarrydex": the window title and the name in the about box.
    Q_PROPERTY(QString displayName READ displayName CONSTANT)
    // The one-line description at the top of the about box's credits.
    Q_PROPERTY(QString tagline READ tagline CONSTANT)

public:
    explicit BrandingInfo(QObject* parent = nullptr) : QObject(parent) {}

    static QString appName() { return text(Branding::appName); }
    static QString company() { return text(Branding::company); }
    static QString shortCompany() { return text(Branding::shortCompany); }
    static QString byline() { return text(Branding::byline); }
    static QString version() { return text(Branding::version); }
    static QString build() { return text(Branding::build); }
    static QString website() { return text(Branding::website); }
    static QString websiteText() { return text(Branding::websiteText); }
    static QString copyright() { return text(Branding::copyright); }
    static QString displayName() { return shortCompany() + QLatin1Char(' ') + appName(); }
    static QString tagline() {
        return QStringLiteral("Offline rock, mineral, gem, fossil and meteorite identifier.");
    }

private:
    static QString text(std::string_view s) {
        return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size()));
    }
};

} // namespace quarrydex::ui
