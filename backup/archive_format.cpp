#include "backup/archive_format.h"

#include "backup/base64.h"
#include "backup/branding.h"

#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <nlohmann/json.hpp>
#include <vector>

namespace quarrydex::archive {

using json = nlohmann::json;

// ---------------------------------------------------------------------------------------
// Writing

namespace {

constexpr std::size_t flushSize = std::size_t{1} << 18;
// Photo bytes are encoded in pieces of a multiple of 3 bytes, so the pieces' Base64 texts
// join into the text of the whole photo.
constexpr std::size_t photoPiece = 3 * (std::size_t{1} << 14);

class Output {
public:
    explicit Output(const ByteSink& sink) : sink_(sink) {
        buffer_.reserve(flushSize + base64::encodedSize(photoPiece));
    }

    void raw(std::string_view bytes) {
        if (status_) {
            buffer_.append(bytes);
            flushWhenFull();
        }
    }

    // A JSON string. Invalid UTF-8 becomes U+FFFD rather than an unreadable file.
    void text(std::string_view value) {
        raw(json(std::string(value)).dump(-1, ' ', false, json::error_handler_t::replace));
    }

    void date(Timestamp value) { text(value.isoUtc()); }

    // Finite numbers only; the callers leave out or replace the rest.
    void number(double value) { raw(json(value).dump()); }

    void photo(std::string_view bytes) {
        raw("\"");
        while (status_ && !bytes.empty()) {
            std::string_view piece = bytes.substr(0, photoPiece);
            bytes.remove_prefix(piece.size());
            base64::encodeAppend(piece, buffer_);
            flushWhenFull();
        }
        raw("\"");
    }

    Status finish() {
        flush();
        return status_;
    }

private:
    void flushWhenFull() {
        if (buffer_.size() >= flushSize) {
            flush();
        }
    }
    void flush() {
        if (status_ && !buffer_.empty()) {
            status_ = sink_(buffer_);
        }
        buffer_.clear();
    }

    const ByteSink& sink_;
    std::string buffer_;
    Status status_;
};

bool isFinite(const std::optional<double>& value) {
    return value && std::isfinite(*value);
}

// Keys in byte order, as every object of the file has them.
void writeItem(Output& out, const BackupArchive::Entry& entry, const std::string* photo) {
    out.raw("{\"acquisition\":");
    out.text(entry.acquisition);
    if (isFinite(entry.confidence)) {
        out.raw(",\"confidence\":");
        out.number(*entry.confidence);
    }
    out.raw(",\"dateAdded\":");
    out.date(entry.dateAdded);
    out.raw(",\"id\":");
    out.text(entry.id.text());
    out.raw(",\"location\":");
    out.text(entry.location);
    out.raw(",\"name\":");
    out.text(entry.name);
    out.raw(",\"notes\":");
    out.text(entry.notes);
    if (photo) {
        out.raw(",\"photo\":");
        out.photo(*photo);
    }
    if (entry.specimenID) {
        out.raw(",\"specimenID\":");
        out.text(*entry.specimenID);
    }
    out.raw("}");
}

void writeHistoryItem(Output& out, const BackupArchive::HistoryItem& item,
                      const std::string* photo) {
    out.raw("{\"answers\":[");
    for (std::size_t i = 0; i < item.answers.size(); ++i) {
        out.raw(i == 0 ? "" : ",");
        out.text(item.answers[i]);
    }
    out.raw("],\"date\":");
    out.date(item.date);
    out.raw(",\"id\":");
    out.text(item.id.text());
    out.raw(",\"level\":");
    out.text(item.level);
    if (photo) {
        out.raw(",\"photo\":");
        out.photo(*photo);
    }
    out.raw(",\"results\":[");
    for (std::size_t i = 0; i < item.results.size(); ++i) {
        const HistoryEntry::Result& result = item.results[i];
        out.raw(i == 0 ? "{\"confidence\":" : ",{\"confidence\":");
        out.number(std::isfinite(result.confidence) ? result.confidence : 0.0);
        out.raw(",\"specimenID\":");
        out.text(result.specimenID);
        out.raw("}");
    }
    out.raw("]}");
}

} // namespace

Status write(const BackupArchive& records, const PhotoLookup& itemPhoto,
             const PhotoLookup& historyPhoto, const ByteSink& sink) {
    Output out(sink);
    std::string holder;
    out.raw("{\"app\":");
    out.text(records.app);
    out.raw(",\"createdAt\":");
    out.date(records.createdAt);
    if (records.favorites) {
        out.raw(",\"favorites\":[");
        for (std::size_t i = 0; i < records.favorites->size(); ++i) {
            out.raw(i == 0 ? "" : ",");
            out.text((*records.favorites)[i]);
        }
        out.raw("]");
    }
    if (records.history) {
        out.raw(",\"history\":[");
        for (std::size_t i = 0; i < records.history->size(); ++i) {
            out.raw(i == 0 ? "" : ",");
            writeHistoryItem(out, (*records.history)[i], historyPhoto(i, holder));
        }
        out.raw("]");
    }
    out.raw(",\"items\":[");
    for (std::size_t i = 0; i < records.items.size(); ++i) {
        out.raw(i == 0 ? "" : ",");
        writeItem(out, records.items[i], itemPhoto(i, holder));
    }
    out.raw("]");
    if (records.publisher) {
        out.raw(",\"publisher\":");
        out.text(*records.publisher);
    }
    out.raw(",\"version\":" + std::to_string(records.version) + "}");
    return out.finish();
}

// ---------------------------------------------------------------------------------------
// Reading

Result<std::optional<std::string>> KeepPhotos::take(PhotoOwner, std::size_t,
                                                    std::string_view base64) {
    return base64::decode(base64); // checked already, so never none here
}

namespace {

// Where in the file the reader is. Each frame is one object or array of the format:
//
//   root ─┬─ "items" ─▶ items ─▶ item
//         ├─ "history" ─▶ history ─▶ historyItem ─┬─ "answers" ─▶ answers
//         │                                       └─ "results" ─▶ results ─▶ result
//         └─ "favorites" ─▶ favorites
//
// The value of a key the format does not know is skipped whatever it holds (skipDepth_
// counts the containers still open inside it).
enum class Frame : std::uint8_t {
    root,
    items,
    item,
    history,
    historyItem,
    answers,
    results,
    result,
    favorites
};

enum class Key : std::uint8_t {
    unknown,
    app,
    createdAt,
    favorites,
    history,
    items,
    publisher,
    version,
    acquisition,
    confidence,
    dateAdded,
    id,
    location,
    name,
    notes,
    photo,
    specimenID,
    answers,
    date,
    level,
    results
};

using KeySet = std::uint32_t;
constexpr KeySet bit(Key key) {
    return KeySet{1} << static_cast<unsigned>(key);
}

constexpr KeySet rootKeys = bit(Key::app) | bit(Key::createdAt) | bit(Key::favorites) |
                            bit(Key::history) | bit(Key::items) | bit(Key::publisher) |
                            bit(Key::version);
constexpr KeySet itemKeys = bit(Key::acquisition) | bit(Key::confidence) | bit(Key::dateAdded) |
                            bit(Key::id) | bit(Key::location) | bit(Key::name) | bit(Key::notes) |
                            bit(Key::photo) | bit(Key::specimenID);
constexpr KeySet historyItemKeys = bit(Key::answers) | bit(Key::date) | bit(Key::id) |
                                   bit(Key::level) | bit(Key::photo) | bit(Key::results);
constexpr KeySet resultKeys = bit(Key::confidence) | bit(Key::specimenID);

constexpr KeySet rootRequired =
    bit(Key::app) | bit(Key::createdAt) | bit(Key::items) | bit(Key::version);
constexpr KeySet itemRequired = bit(Key::acquisition) | bit(Key::dateAdded) | bit(Key::id) |
                                bit(Key::location) | bit(Key::name) | bit(Key::notes);
constexpr KeySet historyItemRequired =
    bit(Key::answers) | bit(Key::date) | bit(Key::id) | bit(Key::level) | bit(Key::results);
constexpr KeySet resultRequired = bit(Key::confidence) | bit(Key::specimenID);

// Keys whose null counts as absent, as for a missing optional key. Only optional keys: a
// required one given as null ("confidence" and "specimenID" in a result) is a wrong type.
constexpr KeySet rootOptional = bit(Key::favorites) | bit(Key::history) | bit(Key::publisher);
constexpr KeySet itemOptional = bit(Key::confidence) | bit(Key::photo) | bit(Key::specimenID);
constexpr KeySet historyItemOptional = bit(Key::photo);

Key keyNamed(std::string_view name) {
    static constexpr std::pair<std::string_view, Key> names[] = {
        {"app", Key::app},
        {"createdAt", Key::createdAt},
        {"favorites", Key::favorites},
        {"history", Key::history},
        {"items", Key::items},
        {"publisher", Key::publisher},
        {"version", Key::version},
        {"acquisition", Key::acquisition},
        {"confidence", Key::confidence},
        {"dateAdded", Key::dateAdded},
        {"id", Key::id},
        {"location", Key::location},
        {"name", Key::name},
        {"notes", Key::notes},
        {"photo", Key::photo},
        {"specimenID", Key::specimenID},
        {"answers", Key::answers},
        {"date", Key::date},
        {"level", Key::level},
        {"results", Key::results},
    };
    for (const auto& [text, key] : names) {
        if (text == name) {
            return key;
        }
    }
    return Key::unknown;
}

struct Number {
    enum class Kind { integer, unsignedInteger, floating } kind;
    std::int64_t integer = 0;
    std::uint64_t unsignedInteger = 0;
    double floating = 0;
};

// A format number must be an integer that fits in 64 bits; 2.0 counts, 2.5 and 1e300 and
// 99999999999999999999 do not.
std::optional<std::int64_t> wholeNumber(const Number& n) {
    switch (n.kind) {
    case Number::Kind::integer:
        return n.integer;
    case Number::Kind::unsignedInteger:
        if (n.unsignedInteger <=
            static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
            return static_cast<std::int64_t>(n.unsignedInteger);
        }
        return std::nullopt;
    case Number::Kind::floating:
        if (std::isfinite(n.floating) && n.floating == std::trunc(n.floating) &&
            n.floating >= -0x1p63 && n.floating < 0x1p63) {
            return static_cast<std::int64_t>(n.floating);
        }
        return std::nullopt;
    }
    return std::nullopt;
}

std::optional<double> finiteNumber(const Number& n) {
    switch (n.kind) {
    case Number::Kind::integer:
        return static_cast<double>(n.integer);
    case Number::Kind::unsignedInteger:
        return static_cast<double>(n.unsignedInteger);
    case Number::Kind::floating:
        if (std::isfinite(n.floating)) {
            return n.floating;
        }
        return std::nullopt;
    }
    return std::nullopt;
}

class Reader final : public nlohmann::json_sax<json> {
public:
    explicit Reader(PhotoSink& photos) : photos_(photos) {}

    std::optional<BackupError> failure;
    BackupArchive archive;
    bool complete = false; // the top-level object was closed

    bool null() override {
        if (skipDepth_ > 0) {
            return true;
        }
        if (!isMemberValue()) {
            return refuse();
        }
        return key_ == Key::unknown || (bit(key_) & optionalIn(frames_.back())) != 0 ? true
                                                                                     : refuse();
    }

    bool boolean(bool) override {
        return skipDepth_ > 0 || (isMemberValue() && key_ == Key::unknown) ? true : refuse();
    }

    bool number_integer(number_integer_t value) override {
        return number({Number::Kind::integer, value, 0, 0});
    }
    bool number_unsigned(number_unsigned_t value) override {
        return number({Number::Kind::unsignedInteger, 0, value, 0});
    }
    bool number_float(number_float_t value, const string_t&) override {
        return number({Number::Kind::floating, 0, 0, value});
    }

    bool string(string_t& value) override;
    bool binary(binary_t&) override { return skipDepth_ > 0 ? true : refuse(); }
    bool start_object(std::size_t) override;
    bool key(string_t& name) override;
    bool end_object() override;
    bool start_array(std::size_t) override;
    bool end_array() override;

    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) override {
        return refuse();
    }

private:
    bool refuse() {
        if (!failure) {
            failure = BackupError::notABackup();
        }
        return false;
    }

    // Inside an object of the format, with a key read: the coming value is that key's.
    bool isMemberValue() const {
        if (frames_.empty()) {
            return false;
        }
        Frame f = frames_.back();
        return f == Frame::root || f == Frame::item || f == Frame::historyItem ||
               f == Frame::result;
    }

    static KeySet optionalIn(Frame f) {
        switch (f) {
        case Frame::root:
            return rootOptional;
        case Frame::item:
            return itemOptional;
        case Frame::historyItem:
            return historyItemOptional;
        default:
            return 0;
        }
    }

    // Opening a container as the value of a key the format does not know: skip it.
    bool skipOrRefuse() {
        if (isMemberValue() && key_ == Key::unknown) {
            skipDepth_ = 1;
            return true;
        }
        return refuse();
    }

    bool number(const Number& n);
    bool date(const std::string& text, Timestamp& into);
    bool uuid(const std::string& text, Uuid& into);
    bool photo(PhotoOwner owner, const std::string& text, std::optional<std::string>& into);

    PhotoSink& photos_;
    std::vector<Frame> frames_;
    std::size_t skipDepth_ = 0;
    Key key_ = Key::unknown;
    KeySet rootSeen_ = 0;
    KeySet recordSeen_ = 0; // of the item or history item being read
    KeySet resultSeen_ = 0;
    BackupArchive::Entry entry_;
    BackupArchive::HistoryItem historyItem_;
    HistoryEntry::Result result_;
};

bool Reader::date(const std::string& text, Timestamp& into) {
    std::optional<Timestamp> parsed = Timestamp::parseIsoUtc(text);
    if (!parsed) {
        return refuse();
    }
    into = *parsed;
    return true;
}

bool Reader::uuid(const std::string& text, Uuid& into) {
    std::optional<Uuid> parsed = Uuid::parse(text);
    if (!parsed) {
        return refuse();
    }
    into = *parsed;
    return true;
}

bool Reader::photo(PhotoOwner owner, const std::string& text, std::optional<std::string>& into) {
    if (!base64::isValid(text)) {
        return refuse();
    }
    std::size_t index = owner == PhotoOwner::item ? archive.items.size() : archive.history->size();
    Result<std::optional<std::string>> kept = photos_.take(owner, index, text);
    if (!kept) {
        failure = BackupError::unreadable(kept.error());
        return false;
    }
    into = std::move(kept).value();
    return true;
}

// Values are copied, not moved: the parser reuses one buffer for every string, and after
// a photo that buffer is half a megabyte, which a moved-to record would then keep.
bool Reader::string(string_t& value) {
    if (skipDepth_ > 0) {
        return true;
    }
    if (frames_.empty()) {
        return refuse();
    }
    switch (frames_.back()) {
    case Frame::answers:
        historyItem_.answers.push_back(value);
        return true;
    case Frame::favorites:
        archive.favorites->push_back(value);
        return true;
    case Frame::items:
    case Frame::history:
    case Frame::results:
        return refuse();
    case Frame::root:
        switch (key_) {
        case Key::unknown:
            return true;
        case Key::app:
            // Another program's file: nothing later in it could make it a backup.
            archive.app = value;
            return archive.app == Branding::appName ? true : refuse();
        case Key::createdAt:
            return date(value, archive.createdAt);
        case Key::publisher:
            archive.publisher = value;
            return true;
        default:
            return refuse();
        }
    case Frame::item:
        switch (key_) {
        case Key::unknown:
            return true;
        case Key::acquisition:
            entry_.acquisition = value;
            return true;
        case Key::dateAdded:
            return date(value, entry_.dateAdded);
        case Key::id:
            return uuid(value, entry_.id);
        case Key::location:
            entry_.location = value;
            return true;
        case Key::name:
            entry_.name = value;
            return true;
        case Key::notes:
            entry_.notes = value;
            return true;
        case Key::photo:
            return photo(PhotoOwner::item, value, entry_.photo);
        case Key::specimenID:
            entry_.specimenID = value;
            return true;
        default:
            return refuse();
        }
    case Frame::historyItem:
        switch (key_) {
        case Key::unknown:
            return true;
        case Key::date:
            return date(value, historyItem_.date);
        case Key::id:
            return uuid(value, historyItem_.id);
        case Key::level:
            historyItem_.level = value;
            return true;
        case Key::photo:
            return photo(PhotoOwner::history, value, historyItem_.photo);
        default:
            return refuse();
        }
    case Frame::result:
        switch (key_) {
        case Key::unknown:
            return true;
        case Key::specimenID:
            result_.specimenID = value;
            return true;
        default:
            return refuse();
        }
    }
    return refuse();
}

bool Reader::number(const Number& n) {
    if (skipDepth_ > 0) {
        return true;
    }
    if (!isMemberValue()) {
        return refuse();
    }
    if (key_ == Key::unknown) {
        return true;
    }
    Frame f = frames_.back();
    if (f == Frame::root && key_ == Key::version) {
        std::optional<std::int64_t> version = wholeNumber(n);
        if (!version) {
            return refuse();
        }
        archive.version = *version;
        return true;
    }
    if ((f == Frame::item || f == Frame::result) && key_ == Key::confidence) {
        std::optional<double> confidence = finiteNumber(n);
        if (!confidence) {
            return refuse();
        }
        if (f == Frame::item) {
            entry_.confidence = confidence;
        } else {
            result_.confidence = *confidence;
        }
        return true;
    }
    return refuse();
}

bool Reader::start_object(std::size_t) {
    if (skipDepth_ > 0) {
        ++skipDepth_;
        return true;
    }
    if (frames_.empty()) {
        if (complete) {
            return refuse();
        }
        frames_.push_back(Frame::root);
        return true;
    }
    switch (frames_.back()) {
    case Frame::items:
        entry_ = BackupArchive::Entry{};
        recordSeen_ = 0;
        frames_.push_back(Frame::item);
        return true;
    case Frame::history:
        historyItem_ = BackupArchive::HistoryItem{};
        recordSeen_ = 0;
        frames_.push_back(Frame::historyItem);
        return true;
    case Frame::results:
        result_ = HistoryEntry::Result{};
        resultSeen_ = 0;
        frames_.push_back(Frame::result);
        return true;
    default:
        return skipOrRefuse();
    }
}

bool Reader::key(string_t& name) {
    if (skipDepth_ > 0) {
        return true;
    }
    Frame f = frames_.back(); // the parser reports keys only inside an object
    KeySet* seen = &rootSeen_;
    KeySet known = rootKeys;
    if (f == Frame::item || f == Frame::historyItem) {
        seen = &recordSeen_;
        known = f == Frame::item ? itemKeys : historyItemKeys;
    } else if (f == Frame::result) {
        seen = &resultSeen_;
        known = resultKeys;
    }
    key_ = keyNamed(name);
    if ((bit(key_) & known) == 0) {
        key_ = Key::unknown;
        return true;
    }
    // A key given twice leaves it unclear which value was meant.
    if ((*seen & bit(key_)) != 0) {
        return refuse();
    }
    *seen |= bit(key_);
    return true;
}

bool Reader::end_object() {
    if (skipDepth_ > 0) {
        --skipDepth_;
        return true;
    }
    Frame f = frames_.back();
    frames_.pop_back();
    switch (f) {
    case Frame::root:
        if ((rootSeen_ & rootRequired) != rootRequired) {
            return refuse();
        }
        complete = true;
        return true;
    case Frame::item:
        if ((recordSeen_ & itemRequired) != itemRequired) {
            return refuse();
        }
        archive.items.push_back(std::move(entry_));
        return true;
    case Frame::historyItem:
        if ((recordSeen_ & historyItemRequired) != historyItemRequired) {
            return refuse();
        }
        archive.history->push_back(std::move(historyItem_));
        return true;
    case Frame::result:
        if ((resultSeen_ & resultRequired) != resultRequired) {
            return refuse();
        }
        historyItem_.results.push_back(std::move(result_));
        return true;
    default:
        return refuse();
    }
}

bool Reader::start_array(std::size_t) {
    if (skipDepth_ > 0) {
        ++skipDepth_;
        return true;
    }
    if (!isMemberValue()) {
        return refuse();
    }
    Frame f = frames_.back();
    if (f == Frame::root && key_ == Key::items) {
        frames_.push_back(Frame::items);
        return true;
    }
    if (f == Frame::root && key_ == Key::history) {
        archive.history.emplace();
        frames_.push_back(Frame::history);
        return true;
    }
    if (f == Frame::root && key_ == Key::favorites) {
        archive.favorites.emplace();
        frames_.push_back(Frame::favorites);
        return true;
    }
    if (f == Frame::historyItem && key_ == Key::answers) {
        frames_.push_back(Frame::answers);
        return true;
    }
    if (f == Frame::historyItem && key_ == Key::results) {
        frames_.push_back(Frame::results);
        return true;
    }
    return skipOrRefuse();
}

bool Reader::end_array() {
    if (skipDepth_ > 0) {
        --skipDepth_;
        return true;
    }
    frames_.pop_back(); // the parser closes only what was opened
    return true;
}

} // namespace

BackupResult<BackupArchive> read(JsonSource& source, PhotoSink& photos) {
    Reader reader(photos);
    bool parsed = false;
    try {
        parsed = parseJsonStream(source, reader);
    } catch (const nlohmann::json::exception&) {
        return BackupError::notABackup();
    } catch (const std::bad_alloc&) {
        return BackupError::unreadable(std::strerror(ENOMEM));
    }
    if (reader.failure) {
        return *reader.failure;
    }
    if (!parsed || !reader.complete || reader.archive.app != Branding::appName) {
        return BackupError::notABackup();
    }
    if (reader.archive.version > BackupArchive::currentVersion) {
        return BackupError::newerVersion(reader.archive.version);
    }
    return std::move(reader.archive);
}

} // namespace quarrydex::archive
