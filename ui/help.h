#pragma once
// The built-in help: nine fixed chapters plus one on the sample collection and its photo
// credits, shown in the help window and on the About & Help screen.

#include <QAbstractListModel>
#include <QString>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

#include <optional>
#include <string>
#include <vector>

class QQmlEngine;
class QJSEngine;

namespace quarrydex::ui {

// Body text is plain (see help_block.h): blank lines between paragraphs, "• " bullets, "1. "
// steps, and UPPER-CASE lead words that the reading pane shows in bold.
struct HelpChapter {
    QString id;
    QString title;
    QString symbol;
    QString text;
};

// The fixed chapters, in reading order; the samples chapter follows them.
std::vector<HelpChapter> baseHelpChapters();
// Built from the sample set's credit blocks; none means this copy has no sample photos.
HelpChapter samplesHelpChapter(const std::optional<std::string>& credits);

// The chapters as a list model: roles id, title, symbol, text.
class HelpChapterModel : public QAbstractListModel {
    Q_OBJECT
    QML_ANONYMOUS

public:
    enum Role { IdRole = Qt::UserRole + 1, TitleRole, SymbolRole, TextRole };

    explicit HelpChapterModel(std::vector<HelpChapter> chapters, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    const std::vector<HelpChapter>& chapters() const { return chapters_; }

private:
    std::vector<HelpChapter> chapters_;
};

// The help book of the program, one per process (QML: `QuarrydexHelp`). show() asks the
// main window to open the help window on a topic.
class QuarrydexHelp : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(quarrydex::ui::HelpChapterModel* chapters READ chapters CONSTANT)
    Q_PROPERTY(int count READ count CONSTANT)

public:
    // `credits` is the sample set's credits text, or none without sample photos.
    explicit QuarrydexHelp(const std::optional<std::string>& credits, QObject* parent = nullptr);

    // Built at first use from the program's own sample set.
    static QuarrydexHelp* instance();
    static QuarrydexHelp* create(QQmlEngine*, QJSEngine*);

    HelpChapterModel* chapters() { return &model_; }
    int count() const { return static_cast<int>(model_.chapters().size()); }

    // Position of the chapter with this id; 0 (Welcome) when there is none.
    Q_INVOKABLE int indexOf(const QString& id) const;
    // id, title, symbol, text and blocks (see helpBlockList) of one chapter; empty outside the
    // range.
    Q_INVOKABLE QVariantMap chapter(int index) const;
    // Opens the help window on `topic` (a chapter id; anything else opens Welcome).
    Q_INVOKABLE void show(const QString& topic);

Q_SIGNALS:
    void showRequested(int index);

private:
    HelpChapterModel model_;
};

} // namespace quarrydex::ui
