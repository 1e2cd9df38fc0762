import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quarrydex

// "Take a Photo": the live preview of the default camera, what the camera is doing, Cancel and
// Capture. Shown while AppModel.showCamera is true; the camera runs only while it is open. A
// captured photo goes to the model and the Identify section.
Dialog {
    id: sheet

    objectName: "cameraSheet"
    modal: true
    focus: true
    closePolicy: Popup.CloseOnEscape
    anchors.centerIn: Overlay.overlay
    padding: Theme.margin
    contentWidth: Theme.dialogWidth * 1.25

    Overlay.modal: Rectangle {
        color: Theme.scrim
    }

    background: Rectangle {
        color: Theme.surface
        radius: Theme.corner
        border.color: Theme.hairline
    }

    header: Text {
        objectName: "cameraTitle"
        text: qsTr("Take a Photo")
        color: Theme.text
        font.pixelSize: Theme.fontHeadline
        font.weight: Font.DemiBold
        topPadding: Theme.margin
        leftPadding: Theme.margin
        rightPadding: Theme.margin
    }

    CameraController {
        id: camera
        videoOutput: preview.videoSink
        onPhotoCaptured: photo => {
            AppModel.setPhotoAsync(photo)
            AppModel.section = "identify"
            sheet.close()
        }
    }

    Connections {
        target: AppModel
        function onShowCameraChanged() {
            if (AppModel.showCamera) {
                sheet.open()
            } else {
                sheet.close()
            }
        }
    }

    onOpened: camera.start()
    onClosed: {
        camera.stop()
        AppModel.showCamera = false
    }

    ColumnLayout {
        spacing: Theme.spacing
        width: sheet.availableWidth

        Rectangle {
            color: Theme.ground
            radius: Theme.corner / 2
            Layout.fillWidth: true
            Layout.preferredHeight: width * 3 / 4

            CameraPreview {
                id: preview
                anchors.fill: parent
                anchors.margins: Theme.spacingSmall
            }
            SymbolIcon {
                anchors.centerIn: parent
                visible: !camera.ready
                symbol: "camera"
                size: Theme.iconLarge
                color: Theme.textMuted
            }
        }
        Text {
            objectName: "cameraStatus"
            text: camera.status
            color: Theme.textMuted
            font.pixelSize: Theme.fontCaption
            wrapMode: Text.WordWrap
            Layout.fillWidth: true
        }
        RowLayout {
            spacing: Theme.spacing
            Layout.alignment: Qt.AlignRight

            VxChromeButton {
                objectName: "cameraCancel"
                text: qsTr("Cancel")
                Layout.preferredWidth: Theme.buttonWidth * 1.5
                onClicked: sheet.close()
            }
            VxChromeButton {
                objectName: "cameraCapture"
                text: qsTr("Capture")
                prominent: true
                enabled: camera.ready
                glyph: Icons.glyph("camera.circle.fill")
                glyphFamily: Icons.family
                Layout.preferredWidth: Theme.buttonWidth * 1.5
                onClicked: camera.capture()
            }
        }
    }
}
