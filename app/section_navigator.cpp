#include "app/section_navigator.h"

namespace quarrydex {

SectionNavigator::SectionNavigator(QObject* parent) : QObject(parent) {}

void SectionNavigator::push(const QString& kind, const QString& id, double confidence) {
    Entry entry{kind, id, confidence < 0 ? -1 : confidence};
    if (!stack_.empty() && stack_.back() == entry) {
        return;
    }
    stack_.push_back(std::move(entry));
    Q_EMIT changed();
}

bool SectionNavigator::pop() {
    if (stack_.empty()) {
        return false;
    }
    stack_.pop_back();
    Q_EMIT changed();
    return true;
}

void SectionNavigator::clear() {
    if (stack_.empty()) {
        return;
    }
    stack_.clear();
    Q_EMIT changed();
}

} // namespace quarrydex
