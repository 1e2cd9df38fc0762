#pragma once
// The one object every screen reads and changes: the sidebar selection, the current
// identification session (photo, answers, result), transient messages, and the personal
// data store. It decides when an identification runs and keeps one history entry per
// session, rewritten as the user refines the answers.
//
// Ownership: owns the store and the candidate list; shares the read-only library. Errors
// are state (photoError, sampleMessage, storeError), never exceptions. Qt Core only, so
// it works without a display. Main thread only: the store's change notices arrive
// synchronously on it and are forwarded as storeChanged(). The one exception is photo
// preparation by the ...Async calls, which runs on the global thread pool and touches no
// state; its outcome is applied back on the main thread.

#include "app/app_section.h"
#include "app/backup_controller.h"
#include "app/candidate_list_model.h"
#include "app/collection_editor.h"
#include "app/collection_list_model.h"
#include "app/favorites_list_model.h"
#include "app/history_list_model.h"
#include "app/library_list_model.h"
#include "app/section_navigator.h"
#include "identify/answers.h"
#include "identify/matcher.h"
#include "identify/rgb.h"
#include "library/specimen_library.h"
#include "store/stone_store.h"
#include "store/uuid.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariantList>
#include <QVariantMap>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace quarrydex {

// Kept out of this header: it brings in the image library's headers, whose glib part does
// not mix with Qt's keyword macros in code that includes this file.
class SampleSet;
// The outcome of preparing photo bytes for the session (defined with the model).
struct PreparedPhoto;

class AppModel : public QObject {
    Q_OBJECT

    // Sidebar selection as a section's raw value; "" is none. Unknown values select none.
    Q_PROPERTY(QString section READ section WRITE setSection NOTIFY sectionChanged)
    // [{raw, title, symbol, group}] in sidebar order.
    Q_PROPERTY(QVariantList sections READ sections CONSTANT)

    // The prepared photo of the session (JPEG bytes). photoRevision grows with every new
    // or cleared photo so an image view can reload even when the bytes look alike.
    Q_PROPERTY(bool hasPhoto READ hasPhoto NOTIFY photoDataChanged)
    Q_PROPERTY(QByteArray photoData READ photoData NOTIFY photoDataChanged)
    Q_PROPERTY(int photoRevision READ photoRevision NOTIFY photoDataChanged)
    // Centre colour of the photo as "#RRGGBB"; "" when there is none.
    Q_PROPERTY(QString photoColor READ photoColor NOTIFY photoColorChanged)
    // Shown under the photo area; "" is none.
    Q_PROPERTY(QString photoError READ photoError WRITE setPhotoError NOTIFY photoErrorChanged)
    Q_PROPERTY(bool showCamera READ showCamera WRITE setShowCamera NOTIFY showCameraChanged)
    // A photo is being prepared in the background (see setPhotoAsync).
    Q_PROPERTY(bool preparingPhoto READ preparingPhoto NOTIFY preparingPhotoChanged)

    // [{raw, title, hint, symbol, options: [{raw, title}]}] in the order questions are shown.
    Q_PROPERTY(QVariantList questions READ questions CONSTANT)
    // Question raw value -> answer raw value, answered questions only.
    Q_PROPERTY(QVariantMap answers READ answerMap NOTIFY answersChanged)
    Q_PROPERTY(int answeredCount READ answeredCount NOTIFY answersChanged)
    // A photo or at least one answer.
    Q_PROPERTY(bool canIdentify READ canIdentify NOTIFY canIdentifyChanged)
    // True once an identification ran in this session; from then on every change re-runs it.
    Q_PROPERTY(bool hasRun READ hasRun NOTIFY hasRunChanged)

    // The last result; the properties below are empty, false or 0 while there is none.
    Q_PROPERTY(bool hasResult READ hasResult NOTIFY resultChanged)
    Q_PROPERTY(CandidateListModel* candidates READ candidates CONSTANT)
    Q_PROPERTY(QString levelRaw READ levelRaw NOTIFY resultChanged)
    Q_PROPERTY(QString levelTitle READ levelTitle NOTIFY resultChanged)
    Q_PROPERTY(QString levelExplanation READ levelExplanation NOTIFY resultChanged)
    Q_PROPERTY(bool nothingFitsWell READ nothingFitsWell NOTIFY resultChanged)
    Q_PROPERTY(bool usedPhotoColor READ usedPhotoColor NOTIFY resultChanged)
    Q_PROPERTY(int evidence READ evidence NOTIFY resultChanged)
    // Raw value of the most helpful next question; "" when all are answered.
    Q_PROPERTY(QString suggestedQuestion READ suggestedQuestion NOTIFY resultChanged)

    // Outcome of loading or removing the sample collection; "" is none.
    Q_PROPERTY(
        QString sampleMessage READ sampleMessage WRITE setSampleMessage NOTIFY sampleMessageChanged)
    // This copy of the program ships sample photos.
    Q_PROPERTY(bool hasSampleSet READ hasSampleSet CONSTANT)
    // Ids of the shipped sample photos, in manifest order; empty without a sample set.
    Q_PROPERTY(QStringList sampleIds READ sampleIds CONSTANT)
    // The store holds sample pieces (follows the store).
    Q_PROPERTY(bool hasSamples READ hasSamples NOTIFY hasSamplesChanged)
    // Id of a library species whose detail is shown over the section; "" is none.
    Q_PROPERTY(QString demoDetail READ demoDetail WRITE setDemoDetail NOTIFY demoDetailChanged)
    // Name of that species; "" when no detail is shown.
    Q_PROPERTY(QString demoDetailName READ demoDetailName NOTIFY demoDetailChanged)
    // Number of species in the reference library.
    Q_PROPERTY(int speciesCount READ speciesCount CONSTANT)
    // Why the reference library could not be loaded; "" when it loaded.
    Q_PROPERTY(QString libraryError READ libraryError CONSTANT)
    // The store's last failure (a save or photo write); "" is none. See clearStoreError().
    Q_PROPERTY(QString storeError READ storeError NOTIFY storeChanged)
    Q_PROPERTY(QStringList favorites READ favorites NOTIFY storeChanged)
    // The backup screen's operations (drives, backup, restore, CSV export).
    Q_PROPERTY(quarrydex::BackupController* backup READ backup CONSTANT)
    // My Collection: the list (with search and undo of a delete) and the one editor sheet.
    Q_PROPERTY(quarrydex::CollectionListModel* collection READ collection CONSTANT)
    Q_PROPERTY(quarrydex::CollectionEditor* collectionEditor READ collectionEditor CONSTANT)
    // The field guide's lists: the library with its search and category filter, the starred
    // species, and past identifications. Each follows the store by itself.
    Q_PROPERTY(LibraryListModel* libraryList READ libraryList CONSTANT)
    Q_PROPERTY(FavoritesListModel* favoritesList READ favoritesList CONSTANT)
    Q_PROPERTY(HistoryListModel* historyList READ historyList CONSTANT)

public:
    static constexpr int candidateLimit = 8;
    static constexpr int historyResultLimit = 5;
    static constexpr int sessionPhotoMaxPixel = 600;
    static constexpr double sessionPhotoQuality = 0.75;

    // `library` must not be null. The store is opened (and its data file loaded) at
    // `storeRoot`. "Load Sample Collection" offers the sample set shipped with the program.
    AppModel(std::shared_ptr<const SpecimenLibrary> library, const std::filesystem::path& storeRoot,
             QObject* parent = nullptr);
    // The same with a given sample set (callers include samples/sample_set.h); none when
    // this copy has no sample photos.
    AppModel(std::shared_ptr<const SpecimenLibrary> library, const std::filesystem::path& storeRoot,
             std::optional<SampleSet> samples, QObject* parent = nullptr);
    ~AppModel() override;
    AppModel(const AppModel&) = delete;
    AppModel& operator=(const AppModel&) = delete;

    // Direct access for C++ callers (other controllers, tests). Changes made to the store
    // reach the screens through storeChanged().
    StoneStore& store() { return store_; }
    const StoneStore& store() const { return store_; }
    const SpecimenLibrary& library() const { return *library_; }
    const Uuid& sessionId() const { return sessionId_; }
    const std::optional<IdentifyResult>& result() const { return result_; }
    const Answers& answers() const { return answers_; }
    // Assigns the answers; when the session has run and they differ, identifies again.
    void setAnswers(const Answers& answers);
    std::optional<AppSection> currentSection() const { return section_; }
    void setCurrentSection(std::optional<AppSection> section);

    QString section() const;
    void setSection(const QString& raw);
    QVariantList sections() const;

    bool hasPhoto() const { return !photoData_.isEmpty(); }
    QByteArray photoData() const { return photoData_; }
    int photoRevision() const { return photoRevision_; }
    QString photoColor() const;
    QString photoError() const { return photoError_; }
    void setPhotoError(const QString& message);
    bool showCamera() const { return showCamera_; }
    void setShowCamera(bool show);
    bool preparingPhoto() const { return preparingPhoto_; }

    QVariantList questions() const;
    QVariantMap answerMap() const;
    int answeredCount() const { return answers_.answeredCount(); }
    bool canIdentify() const { return hasPhoto() || !answers_.isEmpty(); }
    bool hasRun() const { return hasRun_; }

    bool hasResult() const { return result_.has_value(); }
    CandidateListModel* candidates() const { return candidates_; }
    QString levelRaw() const;
    QString levelTitle() const;
    QString levelExplanation() const;
    bool nothingFitsWell() const { return result_ && result_->nothingFitsWell; }
    bool usedPhotoColor() const { return result_ && result_->usedPhotoColor; }
    int evidence() const { return result_ ? result_->evidence : 0; }
    QString suggestedQuestion() const;

    QString sampleMessage() const { return sampleMessage_; }
    void setSampleMessage(const QString& message);
    bool hasSampleSet() const { return samples_ != nullptr; }
    QStringList sampleIds() const;
    bool hasSamples() const { return hasSamples_; }
    QString demoDetail() const;
    QString demoDetailName() const;
    // Unknown ids show no detail.
    void setDemoDetail(const QString& specimenId);
    QString libraryError() const;
    int speciesCount() const { return static_cast<int>(library_->specimens().size()); }
    QString storeError() const;

    // The answer to a question as its raw value; "" when unanswered or the question is unknown.
    Q_INVOKABLE QString answer(const QString& question) const;
    // The navigation stack of a section by raw value (details opened over its main screen);
    // null for an unknown section. Owned by the model.
    Q_INVOKABLE quarrydex::SectionNavigator* navigation(const QString& section) const;
    // A library species' name; "" for an unknown id.
    Q_INVOKABLE QString specimenName(const QString& specimenId) const;
    // The store's favourites (library ids, unknown ones included); bindings that read it
    // follow every change of the store.
    QStringList favorites() const;
    Q_INVOKABLE bool isFavorite(const QString& specimenId) const;
    BackupController* backup() const { return backup_; }
    CollectionListModel* collection() const { return collection_; }
    CollectionEditor* collectionEditor() const { return collectionEditor_; }
    // Opens the collection editor on a new piece of a library species, from anywhere (a
    // species detail, an identification result). `confidence` is the match share (0..1)
    // when it comes from a result, else -1; `withSessionPhoto` takes the session photo.
    Q_INVOKABLE void addToCollection(const QString& specimenId, double confidence,
                                     bool withSessionPhoto);
    Q_INVOKABLE void toggleFavorite(const QString& specimenId);
    LibraryListModel* libraryList() const { return libraryList_; }
    FavoritesListModel* favoritesList() const { return favoritesList_; }
    HistoryListModel* historyList() const { return historyList_; }
    // The detail screen's texts for a library species (see specimenFacts()); with a share
    // (0...1) from an identification result also its match-share line. {found: false} for
    // an unknown id.
    Q_INVOKABLE QVariantMap specimenDetail(const QString& specimenId, double confidence = -1) const;
    // Removes one past identification (by its id) and releases its photo; unknown ids do nothing.
    Q_INVOKABLE void deleteHistory(const QString& entryId);
    // Empties the history; collection and favorites stay.
    Q_INVOKABLE void clearHistory();
    // Sets an answer by raw values ("" clears it). False, and nothing changes, for an unknown
    // question or answer.
    Q_INVOKABLE bool setAnswer(const QString& question, const QString& raw);

    // Prepares the bytes (any JPEG, HEIC, PNG...) as the session photo and reads its colour.
    // False when they are not a usable image: photoError says so and nothing else changes.
    Q_INVOKABLE bool setPhoto(const QByteArray& data);
    // The same for a local file (a path or a file URL, as a picker or a drop gives it).
    Q_INVOKABLE bool setPhotoFromFile(const QUrl& file);
    Q_INVOKABLE void clearPhoto();
    // The same as setPhoto and setPhotoFromFile, with the reading, decoding and colour
    // reading on a worker thread: the result is applied on this thread when it is ready,
    // exactly as setPhoto applies it. Meanwhile preparingPhoto is true. The latest photo
    // wins: a photo set, cleared or started over while one is being prepared makes that one
    // be dropped when it arrives.
    Q_INVOKABLE void setPhotoAsync(const QByteArray& data);
    Q_INVOKABLE void setPhotoFromFileAsync(const QUrl& file);
    // Identifies the stone from the photo colour and the answers, and writes the session's
    // history entry (one per session, replaced on every run).
    Q_INVOKABLE void run();
    // A new session ("New Identification"): fresh id, no photo, answers or result. The old
    // session's history entry stays; photoError is left as it is.
    Q_INVOKABLE void startOver();
    // A new session on one of the shipped sample photos, identified at once.
    Q_INVOKABLE void identifySample(const QString& sampleId);
    // The same with the photo prepared on a worker thread; identifies once it is ready.
    Q_INVOKABLE void identifySampleAsync(const QString& sampleId);
    Q_INVOKABLE void loadSampleCollection();
    Q_INVOKABLE void removeSampleCollection();
    Q_INVOKABLE void clearStoreError();

    // Demonstration content for the product pictures. loadDemoData() fills an empty
    // collection with three pieces and four favorites (a collection holding anything is
    // left alone); loadDemoSession() sets a purple crystal photo and answers, then runs.
    Q_INVOKABLE void loadDemoData();
    Q_INVOKABLE void loadDemoSession();

Q_SIGNALS:
    void sectionChanged();
    void photoDataChanged();
    void photoColorChanged();
    void photoErrorChanged();
    void showCameraChanged();
    void preparingPhotoChanged();
    // A photo prepared in the background was applied (true) or refused (false). Photos
    // overtaken by a later one report nothing.
    void photoPrepared(bool accepted);
    void answersChanged();
    void canIdentifyChanged();
    void hasRunChanged();
    void resultChanged();
    void sampleMessageChanged();
    void hasSamplesChanged();
    void demoDetailChanged();
    // Every change notice of the store (collection, history, favorites or its last error).
    void storeChanged();

private:
    // Maps a preparation to the session's state: the one place deciding the photo's message.
    bool applyPreparedPhoto(const PreparedPhoto& prepared);
    // Runs `prepare` on a worker thread and applies its outcome here unless a later photo
    // came first; `afterAccepted` (optional) runs once an accepted photo is applied.
    void prepareInBackground(std::function<PreparedPhoto()> prepare,
                             std::function<void()> afterAccepted);
    // Drops the photo being prepared, if any.
    void cancelPreparation();
    void setPreparingPhoto(bool preparing);
    void setPhotoState(QByteArray data, std::optional<RGB> color);
    void setHasRun(bool hasRun);
    void setResult(std::optional<IdentifyResult> result);
    void refreshCanIdentify();
    void onStoreChanged();
    void storeSessionPhotoIfNeeded();
    void writeHistory();

    std::shared_ptr<const SpecimenLibrary> library_;
    StoneStore store_;
    Matcher matcher_;
    StoneStore::ObserverId storeObserver_ = 0;
    std::unique_ptr<const SampleSet> samples_; // null without sample photos

    std::optional<AppSection> section_ = AppSection::identify;
    QByteArray photoData_;
    int photoRevision_ = 0;
    std::optional<RGB> photoColor_;
    Answers answers_;
    std::optional<IdentifyResult> result_;
    bool hasRun_ = false;
    QString photoError_;
    bool showCamera_ = false;
    bool preparingPhoto_ = false;
    int photoGeneration_ = 0; // grows with every photo set, cleared or prepared
    Uuid sessionId_ = Uuid::random();
    std::optional<std::string> sessionPhotoFile_;
    QString sampleMessage_;
    std::optional<std::string> demoDetail_;

    // Last announced values of the derived properties, to notify only on change.
    bool canIdentify_ = false;
    bool hasSamples_ = false;

    CandidateListModel* candidates_;            // child object
    std::vector<SectionNavigator*> navigators_; // child objects, one per section in order
    // Child objects made after the store and deleted first in ~AppModel (they use the store).
    BackupController* backup_ = nullptr;
    CollectionListModel* collection_ = nullptr;
    CollectionEditor* collectionEditor_ = nullptr;

    // Child objects that observe the store: deleted before it, in the destructor.
    LibraryListModel* libraryList_ = nullptr;
    FavoritesListModel* favoritesList_ = nullptr;
    HistoryListModel* historyList_ = nullptr;
};

} // namespace quarrydex
