import QtQuick
import QtQuick.Controls
import QtQuick.Dialogs
import QtQuick.Layouts
import Quarrydex

// The collection editor as a sheet over the window: the photo (chosen in the open dialog or
// dropped on the sheet, prepared off the GUI thread), name, species with type-to-find, how
// it was acquired, date, place and notes. Shown while AppModel.collectionEditor.isOpen;
// "Cancel" (Escape) changes nothing, "Save" (Ctrl+Return) saves.
Dialog {
    id: sheet

    objectName: "collectionEditor"

    readonly property var editor: AppModel.collectionEditor

    modal: true
    anchors.centerIn: Overlay.overlay
    padding: Theme.margin
    closePolicy: Popup.CloseOnEscape
    // Drawn at the window's zoom like everything else; sized to fit the window at that zoom.
    scale: VxZoom.value
    width: Math.min(Theme.dialogWidth * 1.6,
                    parent ? parent.width / scale - 2 * Theme.margin : Theme.dialogWidth)
    height: Math.min(implicitHeight, parent ? parent.height / scale - 2 * Theme.margin : implicitHeight)
    contentHeight: form.implicitHeight

    Overlay.modal: Rectangle { color: Theme.scrim }
    background: Rectangle {
        color: Theme.surface
        radius: Theme.corner
        border.color: Theme.hairline
    }
    header: Text {
        objectName: "editorTitle"
        text: sheet.editor.title
        color: Theme.text
        font.pixelSize: Theme.fontTitle
        font.weight: Font.DemiBold
        padding: Theme.margin
        bottomPadding: 0
    }

    // The sheet opens and closes with the editor; the window makes it when the editor first
    // opens.
    function followEditor() {
        if (sheet.editor.isOpen) {
            sheet.open()
            speciesFind.text = ""
            nameField.forceActiveFocus()
        } else {
            sheet.close()
        }
    }
    Connections {
        target: sheet.editor
        function onOpenChanged() { sheet.followEditor() }
    }
    Component.onCompleted: if (editor.isOpen) followEditor()
    onRejected: editor.cancel()

    // For tests and the dialog: takes an image file for the photo.
    function choosePhoto(url) { editor.choosePhotoFile(url) }

    DropArea {
        anchors.fill: parent
        onDropped: (drop) => {
            if (drop.hasUrls && drop.urls.length > 0) {
                sheet.choosePhoto(drop.urls[0])
                drop.accept()
            }
        }
    }

    ScrollView {
        id: scroller
        anchors.fill: parent
        contentWidth: availableWidth
        clip: true
        // Placed as the style places its own.
        ScrollBar.vertical: ThemedScrollBar {
            parent: scroller
            x: scroller.mirrored ? 0 : scroller.width - width
            y: scroller.topPadding
            height: scroller.availableHeight
        }

        ColumnLayout {
            id: form
            width: scroller.availableWidth
            spacing: Theme.spacing

            // The photo and its button.
            RowLayout {
                spacing: Theme.spacing
                Layout.fillWidth: true

                Rectangle {
                    objectName: "editorPhoto"
                    implicitWidth: Theme.iconLarge * 4
                    implicitHeight: Theme.iconLarge * 4
                    radius: Theme.corner
                    color: Theme.surfaceRaised
                    border.color: Theme.hairline
                    clip: true

                    Image {
                        anchors.fill: parent
                        anchors.margins: 1
                        visible: sheet.editor.hasPhoto
                        source: sheet.editor.photoUrl
                        asynchronous: true
                        cache: false
                        fillMode: Image.PreserveAspectCrop
                        sourceSize.width: width * 2
                        sourceSize.height: height * 2
                    }
                    SymbolIcon {
                        anchors.centerIn: parent
                        visible: !sheet.editor.hasPhoto
                        symbol: "photo"
                        size: Theme.iconLarge * 1.5
                        color: Theme.textMuted
                    }
                    BusyIndicator {
                        anchors.centerIn: parent
                        running: sheet.editor.working
                        visible: running
                    }
                }
                ColumnLayout {
                    spacing: Theme.spacingSmall
                    Layout.fillWidth: true
                    VxChromeButton {
                        objectName: "choosePhoto"
                        text: sheet.editor.hasPhoto ? qsTr("Replace Photo…") : qsTr("Add Photo…")
                        enabled: !sheet.editor.working
                        onClicked: photoDialog.open()
                    }
                    Text {
                        text: qsTr("or drop a photo here")
                        color: Theme.textMuted
                        font.pixelSize: Theme.fontCaption
                    }
                    Text {
                        objectName: "editorPhotoError"
                        visible: text !== ""
                        text: sheet.editor.photoError
                        color: Theme.warn
                        font.pixelSize: Theme.fontCaption
                        wrapMode: Text.WordWrap
                        Layout.fillWidth: true
                    }
                }
            }

            GridLayout {
                columns: 2
                columnSpacing: Theme.spacing
                rowSpacing: Theme.spacing
                Layout.fillWidth: true

                Label { text: qsTr("Name"); color: Theme.text }
                TextField {
                    id: nameField
                    objectName: "editorName"
                    text: sheet.editor.name
                    placeholderText: qsTr("Name (e.g. “Big amethyst from Dad”)")
                    onTextEdited: sheet.editor.name = text
                    Layout.fillWidth: true
                }

                Label { text: qsTr("Species"); color: Theme.text }
                RowLayout {
                    spacing: Theme.spacingSmall
                    Layout.fillWidth: true
                    ComboBox {
                        id: speciesBox
                        objectName: "editorSpecies"
                        model: sheet.editor.speciesChoices
                        textRole: "name"
                        valueRole: "id"
                        currentIndex: indexOfValue(sheet.editor.speciesId)
                        onActivated: sheet.editor.speciesId = currentValue
                        Layout.fillWidth: true
                    }
                    TextField {
                        id: speciesFind
                        objectName: "editorSpeciesFind"
                        placeholderText: qsTr("Type to find")
                        Layout.preferredWidth: Theme.buttonWidth
                        // The first species whose name begins with (or else holds) the text.
                        onTextEdited: {
                            const found = sheet.editor.findSpecies(text)
                            if (text !== "" && found.length > 0)
                                sheet.editor.speciesId = found[0].id
                        }
                        onAccepted: speciesBox.forceActiveFocus()
                    }
                }

                Label { text: qsTr("How acquired"); color: Theme.text }
                ComboBox {
                    objectName: "editorAcquisition"
                    model: sheet.editor.acquisitionChoices
                    textRole: "title"
                    valueRole: "raw"
                    currentIndex: indexOfValue(sheet.editor.acquisition)
                    onActivated: sheet.editor.acquisition = currentValue
                    Layout.fillWidth: true
                }

                Label { text: qsTr("Date"); color: Theme.text }
                TextField {
                    objectName: "editorDate"
                    text: sheet.editor.dateText
                    placeholderText: qsTr("yyyy-mm-dd")
                    color: sheet.editor.dateValid ? Theme.text : Theme.warn
                    onTextEdited: sheet.editor.dateText = text
                    ToolTip.visible: !sheet.editor.dateValid && activeFocus
                    ToolTip.text: qsTr("Year, month and day, as in 2026-10-18")
                    Layout.fillWidth: true
                }

                Label { text: qsTr("Where"); color: Theme.text }
                TextField {
                    objectName: "editorLocation"
                    text: sheet.editor.location
                    placeholderText: qsTr("Where (e.g. Glade Park, CO)")
                    onTextEdited: sheet.editor.location = text
                    Layout.fillWidth: true
                }

                Label {
                    text: qsTr("Notes")
                    color: Theme.text
                    Layout.alignment: Qt.AlignTop
                }
                TextArea {
                    objectName: "editorNotes"
                    background: Rectangle {
                        color: Theme.surface
                        radius: Theme.spacingSmall
                        border.color: parent.activeFocus ? Theme.accent : Theme.hairline
                    }
                    text: sheet.editor.notes
                    wrapMode: TextEdit.Wrap
                    onTextChanged: if (text !== sheet.editor.notes) sheet.editor.notes = text
                    Layout.fillWidth: true
                    Layout.preferredHeight: Theme.rowHeight * 2.5
                    KeyNavigation.priority: KeyNavigation.BeforeItem
                    KeyNavigation.tab: cancelButton
                }
            }

            Text {
                objectName: "editorMatchShare"
                visible: sheet.editor.hasConfidence
                text: qsTr("Match share when saved: %1").arg(sheet.editor.confidenceText)
                color: Theme.textMuted
                font.pixelSize: Theme.fontCaption
            }

            RowLayout {
                spacing: Theme.spacing
                Layout.alignment: Qt.AlignRight
                Layout.topMargin: Theme.spacing
                VxChromeButton {
                    id: cancelButton
                    objectName: "editorCancel"
                    text: qsTr("Cancel")
                    onClicked: sheet.editor.cancel()
                }
                VxChromeButton {
                    objectName: "editorSave"
                    text: qsTr("Save")
                    prominent: true
                    enabled: !sheet.editor.working && sheet.editor.dateValid
                    onClicked: sheet.editor.save()
                }
            }
        }
    }

    Shortcut {
        sequences: ["Ctrl+Return", "Ctrl+Enter"]
        enabled: sheet.opened
        onActivated: sheet.editor.save()
    }

    FileDialog {
        id: photoDialog
        objectName: "editorPhotoDialog"
        title: qsTr("Choose a Photo of Your Specimen")
        nameFilters: PhotoSources.nameFilters()
        onAccepted: sheet.choosePhoto(selectedFile)
    }
}
