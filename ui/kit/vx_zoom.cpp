#include "ui/kit/vx_zoom.h"

#include <QJSEngine>
#include <QSettings>

#include <algorithm>
#include <cmath>

namespace quarrydex::ui {

VxZoom::VxZoom(QObject* parent) : QObject(parent) {}

VxZoom* VxZoom::instance() {
    static VxZoom* zoom = new VxZoom(nullptr);
    return zoom;
}

VxZoom* VxZoom::create(QQmlEngine*, QJSEngine*) {
    VxZoom* zoom = instance();
    QJSEngine::setObjectOwnership(zoom, QJSEngine::CppOwnership);
    return zoom;
}

double VxZoom::clamp(double x) {
    if (std::isnan(x)) {
        return 1.0;
    }
    double rounded = std::round(x * 100) / 100; // std::round rounds half away from zero
    return std::clamp(rounded, minimum, maximum);
}

double VxZoom::value() const {
    QSettings settings;
    double stored = settings.value(key).toDouble(); // absent or not a number: 0
    return stored == 0 ? 1.0 : clamp(stored);
}

void VxZoom::setValue(double x) {
    double before = value();
    QSettings settings;
    settings.setValue(key, clamp(x));
    if (value() != before) {
        Q_EMIT valueChanged();
    }
}

int VxZoom::percent() const {
    return static_cast<int>(std::lround(value() * 100));
}

QVariantList VxZoom::levels() const {
    return {85, 100, 115, 130, 150, 175, 200};
}

void VxZoom::zoomIn() {
    setValue(clamp(value()) + stepSize);
}
void VxZoom::zoomOut() {
    setValue(clamp(value()) - stepSize);
}
void VxZoom::actualSize() {
    setValue(1.0);
}
void VxZoom::setLevel(int percent) {
    setValue(percent / 100.0);
}

} // namespace quarrydex::ui
