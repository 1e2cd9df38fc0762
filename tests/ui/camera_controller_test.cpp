#include "ui/camera_controller.h"

#include <QCameraDevice>
#include <QMediaDevices>
#include <QSignalSpy>
#include <gtest/gtest.h>

using quarrydex::ui::CameraController;

TEST(UiCameraController, without_a_camera_it_says_so_stays_unready_and_takes_nothing) {
    if (!QMediaDevices::videoInputs().isEmpty()) {
        GTEST_SKIP() << "this machine has a camera";
    }
    CameraController camera;
    EXPECT_EQ(camera.status(), QString::fromUtf8("Starting camera\u2026"));
    QSignalSpy photos(&camera, &CameraController::photoCaptured);
    QSignalSpy ready(&camera, &CameraController::readyChanged);
    for (int round = 0; round < 2; ++round) { // starting again after a stop says the same
        camera.start();
        EXPECT_EQ(camera.status(),
                  QStringLiteral("No camera found. Choose or drop a photo instead."));
        EXPECT_FALSE(camera.ready());
        camera.capture();
        camera.stop();
    }
    EXPECT_EQ(photos.count(), 0);
    EXPECT_EQ(ready.count(), 0);
}
