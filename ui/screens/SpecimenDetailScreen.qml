import QtQuick
import QtQuick.Layouts
import Quarrydex

// One library species: its facts and texts, the favourite star and "Add to My Collection".
// Opened from the library, favourites, history and identification results; from a result it
// also shows the session photo and the match share.
Item {
    id: screen

    required property string specimenId
    // The match share (0...1) when opened from an identification result; below 0 otherwise.
    property real confidence: -1
    property bool showSessionPhoto: false

    signal backRequested()
    signal openSpecimen(string specimenId)
    signal addToCollection(string specimenId, real confidence)

    objectName: "specimenDetailScreen"

    ColumnLayout {
        anchors.centerIn: parent
        spacing: Theme.spacingLarge

        Text {
            objectName: "specimenName"
            text: AppModel.specimenName(screen.specimenId)
            color: Theme.text
            font.pixelSize: Theme.fontLargeTitle
            font.weight: Font.DemiBold
            Layout.alignment: Qt.AlignHCenter
        }
        VxChromeButton {
            text: qsTr("Back")
            onClicked: screen.backRequested()
            Layout.alignment: Qt.AlignHCenter
        }
    }
}
