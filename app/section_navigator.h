#pragma once
// Which screen a section shows over its main one: a stack of (screen kind, id) entries, one
// stack per sidebar section. The section's own screen (the list) is the empty stack; opening
// a detail pushes an entry, going back pops it. Lists stay alive under their details, so their
// search, filter and scroll position survive the round trip.
//
// Kinds are short words the screens agree on ("specimen", "entry", "history"). An entry may
// carry a match share (0...1) when a species was opened from an identification result.
// Owned by AppModel; main thread only.

#include <QObject>
#include <QString>
#include <vector>

namespace quarrydex {

class SectionNavigator : public QObject {
    Q_OBJECT
    Q_PROPERTY(int depth READ depth NOTIFY changed)
    // The top entry; "" and -1 while the section shows its main screen.
    Q_PROPERTY(QString kind READ kind NOTIFY changed)
    Q_PROPERTY(QString itemId READ itemId NOTIFY changed)
    Q_PROPERTY(double confidence READ confidence NOTIFY changed)

public:
    struct Entry {
        QString kind;
        QString id;
        double confidence = -1; // below 0: none
        bool operator==(const Entry&) const = default;
    };

    explicit SectionNavigator(QObject* parent = nullptr);

    int depth() const { return static_cast<int>(stack_.size()); }
    QString kind() const { return stack_.empty() ? QString() : stack_.back().kind; }
    QString itemId() const { return stack_.empty() ? QString() : stack_.back().id; }
    double confidence() const { return stack_.empty() ? -1 : stack_.back().confidence; }
    const std::vector<Entry>& entries() const { return stack_; }

    // Opens a screen over the current one. Opening the screen already on top does nothing.
    Q_INVOKABLE void push(const QString& kind, const QString& id, double confidence = -1);
    // Back one screen; false when the section already shows its main screen.
    Q_INVOKABLE bool pop();
    // Back to the main screen.
    Q_INVOKABLE void clear();

Q_SIGNALS:
    void changed();

private:
    std::vector<Entry> stack_;
};

} // namespace quarrydex
