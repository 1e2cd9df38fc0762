#pragma once
// Helpers shared by the interface's unit tests.

#include <QSettings>

namespace quarrydex::test {

// Removes the two preferences of the interface before and after a test.
struct CleanPreferences {
    CleanPreferences() { clear(); }
    ~CleanPreferences() { clear(); }
    static void set(const QString& key, const QVariant& value) { QSettings().setValue(key, value); }
    static QVariant get(const QString& key) { return QSettings().value(key); }
    static void clear() {
        QSettings().remove(QStringLiteral("orlo.quarrydex.theme"));
        QSettings().remove(QStringLiteral("orlo.zoom"));
    }
};

} // namespace quarrydex::test
