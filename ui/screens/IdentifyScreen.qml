import QtQuick
import Quarrydex

// The Identify section. Details opened from it stack on AppModel.navigation("identify").
PlaceholderScreen {
    title: qsTr("Identify")
    symbol: "camera.viewfinder"
}
