// The screenshot tour as it is used: the program itself with "--data-root" on an empty
// folder and "--screenshots", without a display, twice over the same folder. The program is
// named by $QUARRYDEX_PROGRAM; its preferences and runtime files go to a temporary folder.

#include "store/stone_store.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <string>

namespace {

const QStringList kPictures = {
    "01-identify-empty", "02-identify-results", "03-library", "04-detail", "05-favorites",
    "06-collection",     "07-history",          "08-backup",  "09-about",  "10-identify-scrolled"};

// What the offscreen platform itself says; anything else on standard error (a QML warning,
// a binding loop, a failed image) fails the test.
const QRegularExpression kHarmlessOutput(
    QStringLiteral("^This plugin does not support (raise\\(\\)|propagateSizeHints\\(\\))$"));

struct Outcome {
    int exitCode = -1;
    QStringList errorLines;
};

Outcome runTour(const QString& home, const QString& dataRoot, const QString& pictures) {
    QDir(home).mkpath("config");
    QDir(home).mkpath("cache");
    QDir(home).mkpath("runtime");
    QFile::setPermissions(home + "/runtime",
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("QT_QPA_PLATFORM", "offscreen");
    env.insert("XDG_CONFIG_HOME", home + "/config");
    env.insert("XDG_CACHE_HOME", home + "/cache");
    env.insert("XDG_RUNTIME_DIR", home + "/runtime");

    QProcess program;
    program.setProcessEnvironment(env);
    program.start(qEnvironmentVariable("QUARRYDEX_PROGRAM"),
                  {"--data-root", dataRoot, "--screenshots", pictures});
    program.waitForFinished(-1); // CTest's timeout ends a tour that never quits
    Outcome outcome;
    outcome.exitCode = program.exitStatus() == QProcess::NormalExit ? program.exitCode() : -1;
    const QString errors = QString::fromUtf8(program.readAllStandardError());
    for (const QString& line : errors.split('\n', Qt::SkipEmptyParts)) {
        if (!kHarmlessOutput.match(line).hasMatch()) {
            outcome.errorLines.append(line);
        }
    }
    return outcome;
}

int distinctColours(const QImage& image) {
    const QImage rgb = image.convertToFormat(QImage::Format_RGB32);
    QSet<QRgb> colours;
    for (int y = 0; y < rgb.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(rgb.constScanLine(y));
        colours.unite(QSet<QRgb>(line, line + rgb.width()));
    }
    return static_cast<int>(colours.size());
}

// The ten pictures are there, each showing a drawn screen, no two the same, and nothing
// else is in the folder (no window beyond the main one, no half-written file).
void checkPictures(const QString& folder) {
    QStringList expected;
    for (const QString& name : kPictures) {
        expected << name + ".png";
    }
    QCOMPARE(QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name), expected);

    QList<QImage> images;
    for (const QString& file : expected) {
        QImage image(QDir(folder).filePath(file));
        QVERIFY2(!image.isNull(), qPrintable(file + " is not a PNG"));
        QVERIFY2(distinctColours(image) >= 500, qPrintable(file + " is nearly blank"));
        for (qsizetype i = 0; i < images.size(); ++i) {
            QVERIFY2(images[i] != image, qPrintable(file + " looks like " + expected[i]));
        }
        images.append(image);
    }
}

// Exactly the three demonstration pieces, each with its photo, and the four favourites.
void checkDemoData(const QString& dataRoot) {
    quarrydex::StoneStore store(dataRoot.toStdString());
    QVERIFY(!store.lastError());
    QStringList names;
    for (const quarrydex::CollectionEntry& entry : store.collection()) {
        names << QString::fromStdString(entry.name);
        QVERIFY2(store.photoData(entry.photoFile), entry.name.c_str());
    }
    names.sort();
    QCOMPARE(names, QStringList({"Alma rhodochrosite", "Amethyst point", "Creek wood"}));
    QStringList favorites;
    for (const std::string& id : store.favorites()) {
        favorites << QString::fromStdString(id);
    }
    favorites.sort();
    QCOMPARE(favorites, QStringList({"amazonite", "dinosaur-bone", "gold", "rhodochrosite"}));
}

} // namespace

class TourTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void two_tours_over_one_empty_folder_write_ten_clean_pictures_and_the_demo_data_once() {
        QTemporaryDir temp;
        QVERIFY(temp.isValid());
        const QString home = temp.filePath("home");
        const QString dataRoot = temp.filePath("data");
        QVERIFY(QDir().mkpath(dataRoot));

        const QString pictures = temp.filePath("pictures");
        for (int run = 1; run <= 2; ++run) {
            if (run == 2) {
                // Spoil the first run's pictures: the second must replace every one.
                for (const QString& name : kPictures) {
                    QFile spoilt(QDir(pictures).filePath(name + ".png"));
                    QVERIFY(spoilt.open(QIODevice::WriteOnly | QIODevice::Truncate));
                    spoilt.write("not a picture");
                }
            }
            const Outcome outcome = runTour(home, dataRoot, pictures);
            QVERIFY2(outcome.errorLines.isEmpty(), qPrintable(outcome.errorLines.join('\n')));
            QCOMPARE(outcome.exitCode, 0);
            checkPictures(pictures);
            if (QTest::currentTestFailed()) {
                return;
            }
            checkDemoData(dataRoot);
            if (QTest::currentTestFailed()) {
                return;
            }
        }
    }
};

QTEST_GUILESS_MAIN(TourTest)
#include "tour_test.moc"
