#include "app/app_model.h"

#include "app/qt_values.h"

#include "app/specimen_facts.h"
#include "identify/image_tools.h"
#include "identify/question.h"
#include "samples/sample_set.h"
#include "store/acquisition.h"

#include <QFile>
#include <QFuture>
#include <QFutureWatcher>
#include <QPromise>
#include <QThreadPool>
#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <string_view>
#include <system_error>

namespace quarrydex {

namespace {

std::string utf8(const QString& text) {
    return text.toUtf8().toStdString();
}

std::string_view bytesOf(const QByteArray& data) {
    return {data.constData(), static_cast<std::size_t>(data.size())};
}

QByteArray toByteArray(const std::string& bytes) {
    return QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

const QString kPhotoUnreadable =
    QStringLiteral("That file couldn't be opened as a photo. Try a JPEG, HEIC or PNG.");
const QString kPhotoTooLarge = QStringLiteral("That photo is too large to open.");
const QString kSampleMissing = QStringLiteral("That sample photo is missing.");

constexpr double kDay = 24 * 60 * 60;

// The pieces loadDemoData() puts into an empty collection, newest first.
struct DemoPiece {
    const char* specimenID;
    const char* name;
    Acquisition acquisition;
    const char* location;
    const char* notes;
    const char* color;
    double daysAgo;
};

constexpr DemoPiece kDemoPieces[] = {
    {"rhodochrosite", "Alma rhodochrosite", Acquisition::bought, "Denver Gem & Mineral Show",
     "Bright red rhomb on matrix.", "#C24A60", 3},
    {"petrified-wood", "Creek wood", Acquisition::found, "Glade Park, CO",
     "Found after rain; shows growth rings.", "#7A5A3E", 12},
    {"amethyst", "Amethyst point", Acquisition::gift, "Grand Junction, CO", "", "#7A5AA8", 40},
};

constexpr const char* kDemoFavorites[] = {"gold", "rhodochrosite", "amazonite", "dinosaur-bone"};

constexpr int kDemoStonePixels = 600;
constexpr const char* kDemoSessionColor = "#7A5AA8";

// A purple six-sided crystal that scratches glass, with a white streak, glassy shine and no
// reaction to vinegar: what a careful look at an amethyst point gives. Weight and magnet
// stay open, so the result still suggests a next question.
Answers demoSessionAnswers() {
    Answers a;
    a.color = ColorFamily::purple;
    a.luster = LusterAnswer::glassy;
    a.habit = HabitAnswer::prisms;
    a.scratch = ScratchAnswer::scratchesGlass;
    a.streak = StreakAnswer::white;
    a.fizz = FizzAnswer::none;
    return a;
}

} // namespace

// Made on any thread, applied on the model's.
struct PreparedPhoto {
    bool usable = false;
    bool tooLarge = false; // not usable because it holds too many pixels to decode
    QByteArray jpeg;
    std::optional<RGB> color;
};

namespace {

PreparedPhoto preparePhoto(std::string_view data) {
    PreparedPhoto out;
    try {
        auto prepared = SamplePipeline::prepareChecked(data);
        if (prepared) {
            out.usable = true;
            out.jpeg = toByteArray(prepared->jpeg);
            out.color = prepared->color;
        } else {
            out.tooLarge = prepared.error() == PhotoFailure::tooLarge;
        }
    } catch (const std::exception&) {
        // Not a usable image (out of memory on a huge one included): reported as such.
    }
    return out;
}

PreparedPhoto prepareFile(const QUrl& file) {
    const QString path = file.isLocalFile() ? file.toLocalFile() : file.toString();
    QFile in(path);
    if (path.isEmpty() || !in.open(QIODevice::ReadOnly)) {
        return {};
    }
    return preparePhoto(bytesOf(in.readAll()));
}

} // namespace

AppModel::AppModel(std::shared_ptr<const SpecimenLibrary> library,
                   const std::filesystem::path& storeRoot, QObject* parent)
    : AppModel(std::move(library), storeRoot, SampleSet::bundled(), parent) {}

AppModel::AppModel(std::shared_ptr<const SpecimenLibrary> library,
                   const std::filesystem::path& storeRoot, std::optional<SampleSet> samples,
                   QObject* parent)
    : QObject(parent), library_(std::move(library)), store_(storeRoot),
      samples_(samples ? std::make_unique<const SampleSet>(std::move(*samples)) : nullptr),
      candidates_(new CandidateListModel(this)) {
    if (!library_) {
        std::abort(); // a programming error: the model is always built over a library
    }
    for ([[maybe_unused]] AppSection section : allAppSections()) {
        navigators_.push_back(new SectionNavigator(this));
    }
    storeObserver_ = store_.observe([this] { onStoreChanged(); });
    backup_ = new BackupController(store_, *library_, this);
    collection_ = new CollectionListModel(store_, *library_, samples_.get(), this);
    collectionEditor_ = new CollectionEditor(store_, *library_, this);
    connect(this, &AppModel::storeChanged, collection_, &CollectionListModel::refresh);
    libraryList_ = new LibraryListModel(*library_, store_, this);
    favoritesList_ = new FavoritesListModel(*library_, store_, this);
    historyList_ = new HistoryListModel(*library_, store_, this);
    candidates_->setFavoriteTest([this](const std::string& id) {
        const auto& favorites = store_.favorites();
        return std::find(favorites.begin(), favorites.end(), id) != favorites.end();
    });
    canIdentify_ = canIdentify();
    hasSamples_ = store_.hasSamples();
}

AppModel::~AppModel() {
    // These use the store, which goes before the QObject children would.
    delete collectionEditor_;
    delete collection_;
    delete backup_;
    // The list models observe the store, which goes before the children do.
    delete libraryList_;
    delete favoritesList_;
    delete historyList_;
    store_.unobserve(storeObserver_);
}

void AppModel::addToCollection(const QString& specimenId, double confidence,
                               bool withSessionPhoto) {
    collectionEditor_->openForSpecies(specimenId, confidence,
                                      withSessionPhoto ? photoData_ : QByteArray());
}

// --- Section and demo detail

QString AppModel::section() const {
    return section_ ? qs(rawValue(*section_)) : QString();
}

void AppModel::setSection(const QString& raw) {
    setCurrentSection(appSectionFromRaw(utf8(raw)));
}

void AppModel::setCurrentSection(std::optional<AppSection> section) {
    if (section_ == section) {
        return;
    }
    section_ = section;
    Q_EMIT sectionChanged();
}

QVariantList AppModel::sections() const {
    QVariantList out;
    for (AppSection s : allAppSections()) {
        out.append(QVariantMap{{QStringLiteral("raw"), qs(rawValue(s))},
                               {QStringLiteral("title"), qs(title(s))},
                               {QStringLiteral("symbol"), qs(symbol(s))},
                               {QStringLiteral("group"), qs(sidebarGroup(s))}});
    }
    return out;
}

QString AppModel::demoDetail() const {
    return demoDetail_ ? qs(*demoDetail_) : QString();
}

QString AppModel::demoDetailName() const {
    const Specimen* s = demoDetail_ ? library_->specimen(*demoDetail_) : nullptr;
    return s ? qs(s->name) : QString();
}

SectionNavigator* AppModel::navigation(const QString& section) const {
    auto wanted = appSectionFromRaw(utf8(section));
    const auto& all = allAppSections();
    for (std::size_t i = 0; wanted && i < all.size(); ++i) {
        if (all[i] == *wanted) {
            return navigators_[i];
        }
    }
    return nullptr;
}

QString AppModel::specimenName(const QString& specimenId) const {
    const Specimen* s = library_->specimen(utf8(specimenId));
    return s ? qs(s->name) : QString();
}

QStringList AppModel::favorites() const {
    QStringList out;
    for (const std::string& id : store_.favorites()) {
        out.append(qs(id));
    }
    return out;
}

bool AppModel::isFavorite(const QString& specimenId) const {
    const auto& favorites = store_.favorites();
    return std::find(favorites.begin(), favorites.end(), utf8(specimenId)) != favorites.end();
}

void AppModel::toggleFavorite(const QString& specimenId) {
    store_.toggleFavorite(utf8(specimenId));
}

QVariantMap AppModel::specimenDetail(const QString& specimenId, double confidence) const {
    return specimenFacts(library_->specimen(utf8(specimenId)), *library_,
                         confidence >= 0 ? std::optional<double>(confidence) : std::nullopt);
}

void AppModel::deleteHistory(const QString& entryId) {
    if (auto id = Uuid::parse(utf8(entryId))) {
        store_.deleteHistory(*id);
    }
}

void AppModel::clearHistory() {
    store_.clearHistory();
}

void AppModel::setDemoDetail(const QString& specimenId) {
    std::optional<std::string> next;
    if (const Specimen* s = library_->specimen(utf8(specimenId))) {
        next = s->id;
    }
    if (next == demoDetail_) {
        return;
    }
    demoDetail_ = std::move(next);
    Q_EMIT demoDetailChanged();
}

// --- Photo

QString AppModel::photoColor() const {
    return photoColor_ ? qs(photoColor_->hex()) : QString();
}

void AppModel::setPhotoError(const QString& message) {
    if (photoError_ == message) {
        return;
    }
    photoError_ = message;
    Q_EMIT photoErrorChanged();
}

void AppModel::setShowCamera(bool show) {
    if (showCamera_ == show) {
        return;
    }
    showCamera_ = show;
    Q_EMIT showCameraChanged();
}

void AppModel::setPhotoState(QByteArray data, std::optional<RGB> color) {
    if (data != photoData_) {
        photoData_ = std::move(data);
        ++photoRevision_;
        Q_EMIT photoDataChanged();
    }
    if (color != photoColor_) {
        photoColor_ = color;
        Q_EMIT photoColorChanged();
    }
    refreshCanIdentify();
}

bool AppModel::setPhoto(const QByteArray& data) {
    cancelPreparation();
    return applyPreparedPhoto(preparePhoto(bytesOf(data)));
}

bool AppModel::setPhotoFromFile(const QUrl& file) {
    cancelPreparation();
    return applyPreparedPhoto(prepareFile(file));
}

bool AppModel::applyPreparedPhoto(const PreparedPhoto& prepared) {
    if (!prepared.usable) {
        setPhotoError(prepared.tooLarge ? kPhotoTooLarge : kPhotoUnreadable);
        return false;
    }
    setPhotoError(QString());
    setPhotoState(prepared.jpeg, prepared.color);
    sessionPhotoFile_.reset(); // the new photo is stored on the next run
    if (hasRun_) {
        run();
    }
    return true;
}

void AppModel::setPhotoAsync(const QByteArray& data) {
    prepareInBackground([data] { return preparePhoto(bytesOf(data)); }, {});
}

void AppModel::setPhotoFromFileAsync(const QUrl& file) {
    prepareInBackground([file] { return prepareFile(file); }, {});
}

void AppModel::prepareInBackground(std::function<PreparedPhoto()> prepare,
                                   std::function<void()> afterAccepted) {
    const int generation = ++photoGeneration_;
    setPreparingPhoto(true);

    auto promise = std::make_shared<QPromise<PreparedPhoto>>();
    auto* watcher = new QFutureWatcher<PreparedPhoto>(this);
    connect(watcher, &QFutureWatcherBase::finished, this,
            [this, watcher, generation, afterAccepted = std::move(afterAccepted)] {
                watcher->deleteLater();
                if (generation != photoGeneration_) {
                    return; // overtaken by a later photo
                }
                setPreparingPhoto(false);
                const bool accepted = applyPreparedPhoto(watcher->result());
                if (accepted && afterAccepted) {
                    afterAccepted();
                }
                Q_EMIT photoPrepared(accepted);
            });
    watcher->setFuture(promise->future());
    promise->start();
    // The worker holds only the promise and its inputs: a model destroyed meanwhile takes
    // its watcher along, and the outcome goes nowhere.
    QThreadPool::globalInstance()->start([promise, prepare = std::move(prepare)] {
        promise->addResult(prepare());
        promise->finish();
    });
}

void AppModel::cancelPreparation() {
    ++photoGeneration_;
    setPreparingPhoto(false);
}

void AppModel::setPreparingPhoto(bool preparing) {
    if (preparingPhoto_ == preparing) {
        return;
    }
    preparingPhoto_ = preparing;
    Q_EMIT preparingPhotoChanged();
}

void AppModel::clearPhoto() {
    cancelPreparation();
    setPhotoState(QByteArray(), std::nullopt);
    sessionPhotoFile_.reset();
    if (hasRun_) {
        run();
    }
}

// --- Answers

QVariantList AppModel::questions() const {
    QVariantList out;
    for (Question q : allQuestions()) {
        QVariantList opts;
        for (const QuestionOption& o : options(q)) {
            opts.append(QVariantMap{{QStringLiteral("raw"), qs(o.rawValue)},
                                    {QStringLiteral("title"), qs(o.title)}});
        }
        out.append(QVariantMap{{QStringLiteral("raw"), qs(rawValue(q))},
                               {QStringLiteral("title"), qs(title(q))},
                               {QStringLiteral("hint"), qs(hint(q))},
                               {QStringLiteral("symbol"), qs(symbol(q))},
                               {QStringLiteral("options"), opts}});
    }
    return out;
}

QVariantMap AppModel::answerMap() const {
    QVariantMap out;
    for (Question q : allQuestions()) {
        if (isAnswered(q, answers_)) {
            out.insert(qs(rawValue(q)), qs(answerRawValue(q, answers_)));
        }
    }
    return out;
}

QString AppModel::answer(const QString& question) const {
    auto q = questionFromRaw(utf8(question));
    return q ? qs(answerRawValue(*q, answers_)) : QString();
}

bool AppModel::setAnswer(const QString& question, const QString& raw) {
    auto q = questionFromRaw(utf8(question));
    if (!q) {
        return false;
    }
    Answers next = answers_;
    if (!setAnswerRawValue(*q, next, utf8(raw))) {
        return false;
    }
    setAnswers(next);
    return true;
}

void AppModel::setAnswers(const Answers& answers) {
    if (answers == answers_) {
        return;
    }
    answers_ = answers;
    Q_EMIT answersChanged();
    refreshCanIdentify();
    if (hasRun_) {
        run();
    }
}

void AppModel::refreshCanIdentify() {
    if (canIdentify() != canIdentify_) {
        canIdentify_ = canIdentify();
        Q_EMIT canIdentifyChanged();
    }
}

// --- Result

void AppModel::setHasRun(bool hasRun) {
    if (hasRun_ == hasRun) {
        return;
    }
    hasRun_ = hasRun;
    Q_EMIT hasRunChanged();
}

void AppModel::setResult(std::optional<IdentifyResult> result) {
    if (!result && !result_) {
        return;
    }
    result_ = std::move(result);
    candidates_->setCandidates(result_ ? result_->candidates : std::vector<Candidate>{});
    Q_EMIT resultChanged();
}

QString AppModel::levelRaw() const {
    return result_ ? qs(rawValue(result_->level)) : QString();
}

QString AppModel::levelTitle() const {
    return result_ ? qs(title(result_->level)) : QString();
}

QString AppModel::levelExplanation() const {
    return result_ ? qs(explanation(result_->level)) : QString();
}

QString AppModel::suggestedQuestion() const {
    return result_ && result_->suggestedNext ? qs(rawValue(*result_->suggestedNext)) : QString();
}

void AppModel::run() {
    setResult(matcher_.identify(photoColor_, answers_, library_->specimens(), candidateLimit));
    setHasRun(true);
    storeSessionPhotoIfNeeded();
    writeHistory();
}

void AppModel::storeSessionPhotoIfNeeded() {
    if (sessionPhotoFile_) {
        // Written once per photo; again only if it went meanwhile (the user deleted the
        // session's history entry, which released the file).
        std::error_code ec;
        if (std::filesystem::exists(store_.photosFolder() / *sessionPhotoFile_, ec)) {
            return;
        }
        sessionPhotoFile_.reset();
    }
    if (photoData_.isEmpty()) {
        return;
    }
    auto image = ImageTools::decode(bytesOf(photoData_), sessionPhotoMaxPixel);
    if (!image) {
        return;
    }
    if (auto jpeg = ImageTools::jpegData(*image, sessionPhotoQuality)) {
        sessionPhotoFile_ = store_.storePhoto(*jpeg, sessionId_);
    }
}

void AppModel::writeHistory() {
    HistoryEntry entry;
    entry.id = sessionId_;
    entry.date = Timestamp::now();
    if (hasPhoto()) {
        entry.answers.push_back("Photo color");
    }
    for (std::string& line : answers_.summary()) {
        entry.answers.push_back(std::move(line));
    }
    const auto& candidates = result_->candidates;
    const std::size_t kept =
        std::min(candidates.size(), static_cast<std::size_t>(historyResultLimit));
    for (std::size_t i = 0; i < kept; ++i) {
        entry.results.push_back({candidates[i].specimen.id, candidates[i].confidence});
    }
    entry.level = std::string(rawValue(result_->level));
    entry.photoFile = sessionPhotoFile_;
    entry.isSample = false;
    store_.addHistory(std::move(entry));
}

// --- Sessions

void AppModel::startOver() {
    cancelPreparation();
    sessionId_ = Uuid::random();
    sessionPhotoFile_.reset();
    setHasRun(false);
    setResult(std::nullopt);
    setPhotoState(QByteArray(), std::nullopt);
    setAnswers(Answers{}); // hasRun is false now, so this does not identify
}

void AppModel::identifySample(const QString& sampleId) {
    const SamplePhoto* photo = samples_ ? samples_->sample(utf8(sampleId)) : nullptr;
    std::optional<std::string> bytes = photo ? samples_->imageData(*photo) : std::nullopt;
    if (!bytes) {
        setPhotoError(kSampleMissing);
        return;
    }
    startOver();
    // A damaged sample file leaves the "couldn't be opened" message; identifying nothing
    // would only add an empty entry to the history.
    if (!setPhoto(toByteArray(*bytes))) {
        return;
    }
    setDemoDetail(QString());
    setCurrentSection(AppSection::identify);
    run();
}

void AppModel::identifySampleAsync(const QString& sampleId) {
    const SamplePhoto* photo = samples_ ? samples_->sample(utf8(sampleId)) : nullptr;
    std::optional<std::string> bytes = photo ? samples_->imageData(*photo) : std::nullopt;
    if (!bytes) {
        setPhotoError(kSampleMissing);
        return;
    }
    startOver();
    prepareInBackground([bytes = std::move(*bytes)] { return preparePhoto(bytes); },
                        [this] {
                            setDemoDetail(QString());
                            setCurrentSection(AppSection::identify);
                            run();
                        });
}

// --- Samples

QStringList AppModel::sampleIds() const {
    QStringList out;
    if (samples_) {
        for (const SamplePhoto& photo : samples_->samples()) {
            out.append(qs(photo.id));
        }
    }
    return out;
}

void AppModel::setSampleMessage(const QString& message) {
    if (sampleMessage_ == message) {
        return;
    }
    sampleMessage_ = message;
    Q_EMIT sampleMessageChanged();
}

void AppModel::loadSampleCollection() {
    if (!samples_) {
        setSampleMessage(QStringLiteral("This copy of Quarrydex has no sample photos."));
        return;
    }
    const int added = samples_->load(store_, *library_);
    if (added < 1) {
        setSampleMessage(QStringLiteral("The sample collection is already loaded."));
    } else {
        setSampleMessage(
            QStringLiteral("Added ") + QString::number(added) +
            QStringLiteral(u" sample specimens to My Collection, with photos and library links, "
                           u"plus a few example identifications in History. Open one and press "
                           u"\u201CIdentify This Photo\u201D to try the identifier. Remove them "
                           u"any time with Help > Remove Sample Collection."));
    }
    setDemoDetail(QString());
    setCurrentSection(AppSection::collection);
}

void AppModel::removeSampleCollection() {
    const int removed = store_.removeSamples();
    if (removed < 1) {
        setSampleMessage(
            QStringLiteral("There are no samples to remove. Your own stones were not touched."));
    } else {
        setSampleMessage(QStringLiteral("Removed ") + QString::number(removed) +
                         QStringLiteral(" sample specimens. Your own stones were not touched."));
    }
}

// --- Store

void AppModel::onStoreChanged() {
    candidates_->refreshFavorites();
    Q_EMIT storeChanged();
    if (store_.hasSamples() != hasSamples_) {
        hasSamples_ = store_.hasSamples();
        Q_EMIT hasSamplesChanged();
    }
}

QString AppModel::libraryError() const {
    return library_->loadError() ? qs(*library_->loadError()) : QString();
}

QString AppModel::storeError() const {
    return store_.lastError() ? qs(*store_.lastError()) : QString();
}

void AppModel::clearStoreError() {
    store_.clearLastError();
}

// --- Demonstration content

void AppModel::loadDemoData() {
    if (!store_.collection().empty()) {
        return;
    }
    const Timestamp now = Timestamp::now();
    // The store keeps the newest piece first; add the oldest first.
    for (auto it = std::rbegin(kDemoPieces); it != std::rend(kDemoPieces); ++it) {
        CollectionEntry entry;
        entry.specimenID = it->specimenID;
        entry.name = it->name;
        entry.dateAdded = now.plusSeconds(-it->daysAgo * kDay);
        entry.acquisition = std::string(it->acquisition.rawValue());
        entry.location = it->location;
        entry.notes = it->notes;
        if (auto color = RGB::fromHex(it->color)) {
            if (auto image = ImageTools::demoStone(*color, kDemoStonePixels)) {
                if (auto jpeg = ImageTools::jpegData(*image)) {
                    entry.photoFile = store_.storePhoto(*jpeg, entry.id);
                }
            }
        }
        store_.add(std::move(entry));
    }
    for (const char* id : kDemoFavorites) {
        if (!isFavorite(QString::fromUtf8(id))) {
            store_.toggleFavorite(id);
        }
    }
}

void AppModel::loadDemoSession() {
    auto color = RGB::fromHex(kDemoSessionColor);
    auto image = color ? ImageTools::demoStone(*color, kDemoStonePixels) : std::nullopt;
    auto jpeg = image ? ImageTools::jpegData(*image) : std::nullopt;
    if (jpeg) {
        setPhoto(toByteArray(*jpeg));
    }
    setAnswers(demoSessionAnswers());
    run();
}

} // namespace quarrydex
