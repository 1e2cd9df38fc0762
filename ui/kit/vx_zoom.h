#pragma once
// The interface zoom: one factor for the whole window content, kept in the preferences
// under "orlo.zoom" and always read back clamped to 0.85...2.0.

#include <QObject>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

class QQmlEngine;
class QJSEngine;

namespace quarrydex::ui {

class VxZoom : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(double value READ value WRITE setValue NOTIFY valueChanged)
    Q_PROPERTY(int percent READ percent NOTIFY valueChanged)
    Q_PROPERTY(double min READ min CONSTANT)
    Q_PROPERTY(double max READ max CONSTANT)
    Q_PROPERTY(double step READ step CONSTANT)
    // The "Zoom Level" choices, in percent.
    Q_PROPERTY(QVariantList levels READ levels CONSTANT)

public:
    static constexpr const char* key = "orlo.zoom";
    static constexpr double minimum = 0.85;
    static constexpr double maximum = 2.0;
    static constexpr double stepSize = 0.15;

    // No default argument: the QML engine must take the shared instance from create().
    explicit VxZoom(QObject* parent);

    // One per process, shared by every window and engine.
    static VxZoom* instance();
    static VxZoom* create(QQmlEngine*, QJSEngine*);

    // Rounds to two decimals (half away from zero), then limits to min...max. Not a number
    // counts as the actual size.
    Q_INVOKABLE static double clamp(double x);

    // The stored factor, clamped; 0 (also what a missing or unreadable value reads as) is 1.0.
    double value() const;
    // Stores clamp(x).
    void setValue(double x);
    int percent() const;

    double min() const { return minimum; }
    double max() const { return maximum; }
    double step() const { return stepSize; }
    QVariantList levels() const;

    Q_INVOKABLE void zoomIn();
    Q_INVOKABLE void zoomOut();
    Q_INVOKABLE void actualSize();
    Q_INVOKABLE void setLevel(int percent);

Q_SIGNALS:
    void valueChanged();
};

} // namespace quarrydex::ui
