#include "support/temp_dir.h"
#include "ui/photo_sources.h"

#include <QUrl>
#include <gtest/gtest.h>

using quarrydex::ui::PhotoSources;

TEST(UiPhotoSources, a_chosen_file_is_read_whole_and_a_missing_one_gives_nothing) {
    quarrydex::test::TempDir dir;
    quarrydex::test::writeFile(dir / "stone.jpg", std::string("\xFF\xD8\xFF\x00jpeg", 8));
    QUrl url = QUrl::fromLocalFile(QString::fromStdString((dir / "stone.jpg").string()));
    EXPECT_EQ(PhotoSources::readFile(url), QByteArray("\xFF\xD8\xFF\x00jpeg", 8));
    EXPECT_TRUE(PhotoSources::readFile(QUrl::fromLocalFile("/no/such/file.jpg")).isEmpty());
}
