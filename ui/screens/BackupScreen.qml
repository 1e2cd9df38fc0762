import QtQuick
import Quarrydex

// The Backup section. Details opened from it stack on AppModel.navigation("backup").
PlaceholderScreen {
    title: qsTr("Backup")
    symbol: "externaldrive"
}
