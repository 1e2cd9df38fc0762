#include "ui/help.h"

#include "samples/sample_set.h"
#include "ui/help_block.h"

#include <QJSEngine>

namespace quarrydex::ui {

HelpChapterModel::HelpChapterModel(std::vector<HelpChapter> chapters, QObject* parent)
    : QAbstractListModel(parent), chapters_(std::move(chapters)) {}

int HelpChapterModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(chapters_.size());
}

QVariant HelpChapterModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const HelpChapter& chapter = chapters_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case IdRole:
        return chapter.id;
    case Qt::DisplayRole:
    case TitleRole:
        return chapter.title;
    case SymbolRole:
        return chapter.symbol;
    case TextRole:
        return chapter.text;
    default:
        return {};
    }
}

QHash<int, QByteArray> HelpChapterModel::roleNames() const {
    return {
        {IdRole, "chapterID"}, {TitleRole, "title"}, {SymbolRole, "symbol"}, {TextRole, "text"}};
}

namespace {

std::vector<HelpChapter> allChapters(const std::optional<std::string>& credits) {
    std::vector<HelpChapter> chapters = baseHelpChapters();
    chapters.push_back(samplesHelpChapter(credits));
    return chapters;
}

} // namespace

QuarrydexHelp::QuarrydexHelp(const std::optional<std::string>& credits, QObject* parent)
    : QObject(parent), model_(allChapters(credits), this) {}

QuarrydexHelp* QuarrydexHelp::instance() {
    static QuarrydexHelp* help = [] {
        std::optional<SampleSet> samples = SampleSet::bundled();
        return new QuarrydexHelp(samples ? std::optional(samples->creditsText()) : std::nullopt);
    }();
    return help;
}

QuarrydexHelp* QuarrydexHelp::create(QQmlEngine*, QJSEngine*) {
    QuarrydexHelp* help = instance();
    QJSEngine::setObjectOwnership(help, QJSEngine::CppOwnership);
    return help;
}

int QuarrydexHelp::indexOf(const QString& id) const {
    const auto& chapters = model_.chapters();
    for (std::size_t i = 0; i < chapters.size(); ++i) {
        if (chapters[i].id == id) {
            return static_cast<int>(i);
        }
    }
    return 0;
}

QVariantMap QuarrydexHelp::chapter(int index) const {
    const auto& chapters = model_.chapters();
    if (index < 0 || index >= static_cast<int>(chapters.size())) {
        return {};
    }
    const HelpChapter& c = chapters[static_cast<std::size_t>(index)];
    return {{"chapterID", c.id},
            {"title", c.title},
            {"symbol", c.symbol},
            {"text", c.text},
            {"blocks", helpBlockList(c.text)}};
}

void QuarrydexHelp::show(const QString& topic) {
    Q_EMIT showRequested(indexOf(topic));
}

} // namespace quarrydex::ui
