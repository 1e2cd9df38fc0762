import QtQuick
import QtQuick.Controls
import Quarrydex

// The row of photo-source buttons: open dialog, camera, clipboard, and Remove while there is
// a photo. The screen decides what each one does.
Flow {
    id: buttons

    property bool hasPhoto: false

    signal chooseRequested()
    signal cameraRequested()
    signal pasteRequested()
    signal removeRequested()

    spacing: Theme.spacing

    component SourceButton: VxChromeButton {
        id: sourceButton
        property string symbol: ""
        property string tip: ""
        glyph: Icons.glyph(symbol)
        glyphFamily: Icons.family
        ToolTip.visible: tip !== "" && hovered
        ToolTip.delay: 600
        ToolTip.text: tip
        Accessible.name: text
    }

    SourceButton {
        objectName: "choosePhotoButton"
        text: qsTr("Choose Photo…")
        symbol: "photo.on.rectangle"
        tip: qsTr("Choose a photo of your specimen")
        onClicked: buttons.chooseRequested()
    }
    SourceButton {
        objectName: "cameraButton"
        text: qsTr("Use Camera…")
        symbol: "camera"
        onClicked: buttons.cameraRequested()
    }
    SourceButton {
        objectName: "pasteButton"
        text: qsTr("Paste")
        symbol: "doc.on.clipboard"
        onClicked: buttons.pasteRequested()
    }
    SourceButton {
        objectName: "removeButton"
        visible: buttons.hasPhoto
        text: qsTr("Remove")
        symbol: "xmark"
        onClicked: buttons.removeRequested()
    }
}
