import QtQuick
import QtQuick.Controls
import QtQuick.Dialogs
import QtQuick.Layouts
import Quarrydex

// The Backup section: when the last verified backup was made, the external drives with
// "Back Up Now", backups and restores through the file dialogs, the CSV export, and the
// progress of whatever runs (on a worker thread: the window stays usable, and Cancel leaves
// nothing behind).
Item {
    id: screen

    objectName: "screen_Backup"

    readonly property var backup: AppModel.backup

    // For tests and the dialogs: what each dialog does with the file it returns.
    function saveBackupTo(url) { backup.saveBackupAs(url) }
    function restoreFrom(url) { backup.readBackup(url) }
    function exportCsvTo(url) { backup.exportCsv(url) }

    Component.onCompleted: {
        backup.refreshDrives()
        if (backup.restorePending)
            confirmRestore.open()
    }

    FocusInView { flickable: scroller.contentItem }
    ScrollView {
        id: scroller
        anchors.fill: parent
        contentWidth: availableWidth
        // Placed as the style places its own.
        ScrollBar.vertical: ThemedScrollBar {
            parent: scroller
            x: scroller.mirrored ? 0 : scroller.width - width
            y: scroller.topPadding
            height: scroller.availableHeight
        }

        ColumnLayout {
            width: Math.min(scroller.availableWidth - 2 * Theme.margin, Theme.readingWidth)
            x: Theme.margin
            spacing: Theme.spacingLarge

            Item { Layout.preferredHeight: Theme.spacing }

            Text {
                objectName: "screenTitle"
                text: qsTr("Backup")
                color: Theme.text
                font.pixelSize: Theme.fontLargeTitle
                font.weight: Font.DemiBold
            }
            Text {
                text: qsTr("A backup is one file holding your whole collection with its photos, your identification history and your favorites. Restoring one only adds what is missing: nothing here is ever deleted or overwritten.")
                color: Theme.textMuted
                font.pixelSize: Theme.fontBody
                wrapMode: Text.WordWrap
                Layout.fillWidth: true
            }

            // The last verified backup.
            VxPanel {
                Layout.fillWidth: true
                implicitHeight: lastColumn.implicitHeight + 2 * padding
                radius: Theme.corner
                padding: Theme.margin

                RowLayout {
                    id: lastColumn
                    width: parent.width
                    spacing: Theme.spacing

                    SymbolIcon {
                        symbol: screen.backup.backupDue ? "exclamationmark.triangle" : "checkmark"
                        size: Theme.iconLarge
                        color: screen.backup.backupDue ? Theme.warn : Theme.accent
                        Layout.alignment: Qt.AlignTop
                    }
                    ColumnLayout {
                        spacing: Theme.spacingSmall
                        Layout.fillWidth: true
                        Text {
                            text: qsTr("Last verified backup")
                            color: Theme.text
                            font.pixelSize: Theme.fontHeadline
                            font.weight: Font.DemiBold
                            wrapMode: Text.WordWrap
                            Layout.fillWidth: true
                        }
                        Text {
                            objectName: "lastBackupWhen"
                            text: screen.backup.hasLastBackup
                                  ? screen.backup.lastBackupWhen + " (" + screen.backup.lastBackupAge + ")"
                                  : qsTr("No verified backup yet.")
                            color: screen.backup.backupDue ? Theme.warn : Theme.text
                            font.pixelSize: Theme.fontBody
                            wrapMode: Text.WordWrap
                            Layout.fillWidth: true
                        }
                        Text {
                            objectName: "lastBackupWhere"
                            visible: screen.backup.hasLastBackup
                            text: screen.backup.lastBackupWhere
                            color: Theme.textMuted
                            font.pixelSize: Theme.fontCaption
                            wrapMode: Text.WrapAnywhere
                            Layout.fillWidth: true
                        }
                        Text {
                            visible: screen.backup.backupDue
                            text: screen.backup.hasLastBackup
                                  ? qsTr("It has been more than a week: time for another backup.")
                                  : qsTr("Back up to a flash drive so your collection survives a lost or broken computer.")
                            color: Theme.textMuted
                            font.pixelSize: Theme.fontCaption
                            wrapMode: Text.WordWrap
                            Layout.fillWidth: true
                        }
                    }
                }
            }

            // The drives.
            RowLayout {
                Layout.fillWidth: true
                spacing: Theme.spacing
                Text {
                    text: qsTr("Flash drives")
                    color: Theme.text
                    font.pixelSize: Theme.fontTitle
                    font.weight: Font.DemiBold
                    wrapMode: Text.WordWrap
                    Layout.fillWidth: true
                }
                VxChromeButton {
                    objectName: "refreshDrives"
                    text: qsTr("Refresh")
                    compact: true
                    enabled: !screen.backup.busy
                    onClicked: screen.backup.refreshDrives()
                }
            }
            Text {
                objectName: "noDriveText"
                visible: screen.backup.drives.length === 0
                text: screen.backup.noDriveText
                color: Theme.textMuted
                font.pixelSize: Theme.fontBody
                wrapMode: Text.WordWrap
                Layout.fillWidth: true
            }
            Repeater {
                objectName: "driveList"
                model: screen.backup.drives

                delegate: VxPanel {
                    id: driveRow
                    required property var modelData
                    objectName: "drive_" + modelData.name
                    Layout.fillWidth: true
                    implicitHeight: driveLine.implicitHeight + 2 * padding
                    radius: Theme.corner
                    padding: Theme.spacing

                    RowLayout {
                        id: driveLine
                        width: parent.width
                        spacing: Theme.spacing
                        SymbolIcon {
                            symbol: "externaldrive"
                            size: Theme.iconLarge
                            color: Theme.accent
                        }
                        ColumnLayout {
                            spacing: 0
                            Layout.fillWidth: true
                            Text {
                                text: driveRow.modelData.name
                                color: Theme.text
                                font.pixelSize: Theme.fontBody
                                font.weight: Font.DemiBold
                                elide: Text.ElideRight
                                Layout.fillWidth: true
                            }
                            Text {
                                text: driveRow.modelData.detail
                                color: Theme.textMuted
                                font.pixelSize: Theme.fontCaption
                                elide: Text.ElideMiddle
                                Layout.fillWidth: true
                            }
                        }
                        VxChromeButton {
                            objectName: "backUpNow"
                            text: qsTr("Back Up Now")
                            prominent: true
                            enabled: !screen.backup.busy
                            onClicked: screen.backup.backUpToDrive(driveRow.modelData.path)
                        }
                    }
                }
            }

            // Any folder, restore and export.
            Text {
                text: qsTr("Files")
                color: Theme.text
                font.pixelSize: Theme.fontTitle
                font.weight: Font.DemiBold
                wrapMode: Text.WordWrap
                Layout.fillWidth: true
            }
            Flow {
                Layout.fillWidth: true
                spacing: Theme.spacing
                VxChromeButton {
                    objectName: "saveBackupAs"
                    text: qsTr("Save Backup As…")
                    enabled: !screen.backup.busy
                    onClicked: {
                        saveDialog.selectedFile = screen.backup.suggestedBackupFile()
                        saveDialog.open()
                    }
                }
                VxChromeButton {
                    objectName: "restoreFromBackup"
                    text: qsTr("Restore from Backup…")
                    enabled: !screen.backup.busy
                    onClicked: openDialog.open()
                }
                VxChromeButton {
                    objectName: "exportCsv"
                    text: qsTr("Export Collection as CSV…")
                    enabled: !screen.backup.busy
                    onClicked: {
                        csvDialog.selectedFile = screen.backup.suggestedCsvFile()
                        csvDialog.open()
                    }
                }
            }

            // What runs now.
            VxPanel {
                objectName: "progressPanel"
                visible: screen.backup.busy
                Layout.fillWidth: true
                implicitHeight: progressColumn.implicitHeight + 2 * padding
                radius: Theme.corner
                padding: Theme.margin

                ColumnLayout {
                    id: progressColumn
                    width: parent.width
                    spacing: Theme.spacing
                    Text {
                        objectName: "progressText"
                        text: screen.backup.progressText
                        color: Theme.text
                        font.pixelSize: Theme.fontBody
                        wrapMode: Text.WordWrap
                        Layout.fillWidth: true
                    }
                    RowLayout {
                        spacing: Theme.spacing
                        Layout.fillWidth: true
                        ProgressBar {
                            objectName: "progressBar"
                            from: 0
                            to: 1
                            value: screen.backup.progress
                            indeterminate: screen.backup.operation === "reading"
                            Layout.fillWidth: true
                        }
                        Text {
                            visible: screen.backup.operation !== "reading"
                            text: Math.round(screen.backup.progress * 100) + "%"
                            color: Theme.textMuted
                            font.pixelSize: Theme.fontCaption
                        }
                        VxChromeButton {
                            objectName: "cancelOperation"
                            text: qsTr("Cancel")
                            compact: true
                            onClicked: screen.backup.cancel()
                        }
                    }
                }
            }

            Text {
                objectName: "backupMessage"
                visible: text !== ""
                text: screen.backup.message
                color: screen.backup.messageIsError ? Theme.warn : Theme.text
                font.pixelSize: Theme.fontBody
                wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                Layout.fillWidth: true
            }

            Item { Layout.preferredHeight: Theme.margin }
        }
    }

    FileDialog {
        id: saveDialog
        objectName: "saveBackupDialog"
        title: qsTr("Save Backup")
        fileMode: FileDialog.SaveFile
        defaultSuffix: "json"
        nameFilters: [qsTr("Quarrydex backups (*.json)")]
        onAccepted: screen.saveBackupTo(selectedFile)
    }

    FileDialog {
        id: openDialog
        objectName: "restoreDialog"
        title: qsTr("Restore from Backup")
        fileMode: FileDialog.OpenFile
        nameFilters: [qsTr("Quarrydex backups (*.json)"), qsTr("All files (*)")]
        onAccepted: screen.restoreFrom(selectedFile)
    }

    FileDialog {
        id: csvDialog
        objectName: "csvDialog"
        title: qsTr("Export Collection as CSV")
        fileMode: FileDialog.SaveFile
        defaultSuffix: "csv"
        nameFilters: [qsTr("Comma-separated values (*.csv)")]
        onAccepted: screen.exportCsvTo(selectedFile)
    }

    // Shown once a backup has been read: what it holds, what restoring it would add.
    Dialog {
        id: confirmRestore
        objectName: "restoreConfirmation"
        title: qsTr("Restore from this backup?")
        modal: true
        anchors.centerIn: Overlay.overlay
        scale: VxZoom.value
        padding: Theme.margin
        width: Theme.dialogWidth + 2 * padding
        closePolicy: Popup.CloseOnEscape

        Overlay.modal: Rectangle { color: Theme.scrim }
        background: Rectangle {
            color: Theme.surface
            radius: Theme.corner
            border.color: Theme.hairline
        }
        header: Text {
            text: confirmRestore.title
            color: Theme.text
            font.pixelSize: Theme.fontHeadline
            font.weight: Font.DemiBold
            padding: Theme.margin
            bottomPadding: 0
        }

        ColumnLayout {
            width: parent.width
            spacing: Theme.spacing
            Text {
                objectName: "restoreHolds"
                text: screen.backup.restoreHoldsText
                color: Theme.text
                font.pixelSize: Theme.fontBody
                wrapMode: Text.WordWrap
                Layout.fillWidth: true
            }
            Text {
                objectName: "restoreAdds"
                text: qsTr("Restoring adds: %1.").arg(screen.backup.restoreAddsText)
                color: Theme.text
                font.pixelSize: Theme.fontBody
                font.weight: Font.DemiBold
                wrapMode: Text.WordWrap
                Layout.fillWidth: true
            }
            Text {
                text: qsTr("Nothing already here is deleted or overwritten.")
                color: Theme.textMuted
                font.pixelSize: Theme.fontCaption
                wrapMode: Text.WordWrap
                Layout.fillWidth: true
            }
            RowLayout {
                spacing: Theme.spacing
                Layout.alignment: Qt.AlignRight
                Layout.topMargin: Theme.spacing
                VxChromeButton {
                    objectName: "restoreCancel"
                    text: qsTr("Cancel")
                    onClicked: screen.backup.discardRestore()
                }
                VxChromeButton {
                    objectName: "restoreConfirm"
                    text: qsTr("Restore")
                    prominent: true
                    focus: true
                    onClicked: screen.backup.confirmRestore()
                }
            }
        }
        // Escape ends up here.
        onRejected: screen.backup.discardRestore()
    }
    Connections {
        target: screen.backup
        function onRestorePendingChanged() {
            if (screen.backup.restorePending)
                confirmRestore.open()
            else
                confirmRestore.close()
        }
    }
}
