import QtQuick
import QtQuick.Dialogs
import Quarrydex

// "Choose Photo…": the open dialog whose photo becomes the session's photo on the Identify
// screen. A file of its own, made on first use, so the dialogs module loads only then.
FileDialog {
    objectName: "photoDialog"
    title: qsTr("Choose a photo of your specimen")
    fileMode: FileDialog.OpenFile
    nameFilters: PhotoSources.nameFilters()
    onAccepted: {
        AppModel.setPhotoFromFileAsync(selectedFile)
        AppModel.section = "identify"
    }
}
