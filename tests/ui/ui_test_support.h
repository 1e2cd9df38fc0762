#pragma once
// Helpers shared by the interface's unit tests.

#include <QSettings>
#include <QString>
#include <QVariant>

namespace quarrydex::test {

// Removes the two preferences of the interface before and after a test.
class CleanPreferences {
public:
    CleanPreferences() { clear(); }
    ~CleanPreferences() { clear(); }
    CleanPreferences(const CleanPreferences&) = delete;
    CleanPreferences& operator=(const CleanPreferences&) = delete;

    static void set(const QString& key, const QVariant& value) {
        QSettings settings;
        settings.setValue(key, value);
    }
    static QVariant get(const QString& key) {
        QSettings settings;
        return settings.value(key);
    }

private:
    static void clear() {
        QSettings settings;
        settings.remove(QStringLiteral("orlo.quarrydex.theme"));
        settings.remove(QStringLiteral("orlo.zoom"));
    }
};

} // namespace quarrydex::test
