import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quarrydex

// The Identify section: a photo, the guided questions and the ranked matches, all read from
// and written to AppModel. A result opens its species over this view through the section's
// navigation stack; the view stays alive underneath, so its scroll position survives.
FocusScope {
    id: screen

    // The open dialog belongs to the window (File › Choose Photo… opens it too).
    signal choosePhotoRequested()

    readonly property var nav: AppModel.navigation("identify")
    readonly property bool showingDetail: nav.depth > 0
    property string lastSample: ""

    objectName: "identifyScreen"
    focus: true

    // The clipboard's image as the photo, or the message that there is none (the photo stays).
    function paste() {
        if (!PhotoSources.pasteInto(AppModel)) {
            AppModel.photoError = qsTr("There's no image on the clipboard.")
        }
    }

    function identify() {
        if (!AppModel.canIdentify) {
            return
        }
        const first = !AppModel.hasRun
        AppModel.run()
        if (first) {
            Qt.callLater(showResults)
        }
    }

    function showResults() {
        const top = results.mapToItem(content, 0, 0).y + content.y - Theme.margin
        scroller.contentY = Math.max(0, Math.min(top, scroller.contentHeight - scroller.height))
    }

    // A sample photo other than the one shown last.
    function trySample() {
        const ids = AppModel.sampleIds.filter(id => id !== lastSample || AppModel.sampleIds.length === 1)
        if (ids.length === 0) {
            return
        }
        lastSample = ids[Math.floor(Math.random() * ids.length)]
        nav.clear()
        AppModel.identifySampleAsync(lastSample)
    }

    function startOver() {
        nav.clear()
        AppModel.photoError = ""
        AppModel.startOver()
    }

    // The first local file among dropped addresses; "" when there is none.
    function droppedFile(urls) {
        for (let i = 0; i < urls.length; ++i) {
            if (urls[i].toString().startsWith("file:")) {
                return urls[i]
            }
        }
        return ""
    }

    function textFieldHasFocus() {
        const item = Window.activeFocusItem
        return item !== null && ("cursorPosition" in item) && !item.readOnly
    }

    Keys.onPressed: event => {
        if (screen.showingDetail) {
            const back = (event.key === Qt.Key_Left && (event.modifiers & Qt.AltModifier))
                         || (event.key === Qt.Key_Backspace && !screen.textFieldHasFocus())
            if (back) {
                screen.nav.pop()
                event.accepted = true
            }
            return
        }
        if ((event.key === Qt.Key_Return || event.key === Qt.Key_Enter)
                && !(event.modifiers & (Qt.ControlModifier | Qt.AltModifier | Qt.ShiftModifier))) {
            screen.identify()
            event.accepted = true
        }
    }

    Shortcut {
        sequences: [StandardKey.Paste]
        enabled: !screen.showingDetail && !AppModel.showCamera
        onActivated: screen.paste()
    }

    Item {
        id: mainView

        anchors.fill: parent
        visible: !screen.showingDetail

        // The screen's toolbar: its title and Start Over.
        Rectangle {
            id: toolbar

            anchors.top: parent.top
            anchors.left: parent.left
            anchors.right: parent.right
            height: Theme.rowHeight + Theme.spacingLarge
            color: Theme.surface

            RowLayout {
                anchors.fill: parent
                anchors.leftMargin: Theme.margin
                anchors.rightMargin: Theme.margin
                spacing: Theme.spacing

                SymbolIcon {
                    symbol: "camera.viewfinder"
                    color: Theme.accent
                }
                Text {
                    objectName: "screenTitle"
                    text: qsTr("Identify")
                    color: Theme.text
                    font.pixelSize: Theme.fontHeadline
                    font.weight: Font.DemiBold
                    Accessible.role: Accessible.Heading
                }
                Item {
                    Layout.fillWidth: true
                }
                VxChromeButton {
                    objectName: "startOverButton"
                    text: qsTr("Start Over")
                    compact: true
                    glyph: Icons.glyph("arrow.counterclockwise")
                    glyphFamily: Icons.family
                    enabled: AppModel.hasPhoto || AppModel.answeredCount > 0
                    onClicked: screen.startOver()
                }
            }
            Rectangle {
                anchors.left: parent.left
                anchors.right: parent.right
                anchors.bottom: parent.bottom
                height: Theme.hairlineWidth
                color: Theme.hairline
            }
        }

        FocusInView { flickable: scroller }
        Flickable {
            id: scroller

            objectName: "identifyScroller"
            anchors.top: toolbar.bottom
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            clip: true
            contentWidth: width
            contentHeight: content.implicitHeight + 2 * Theme.margin
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: ThemedScrollBar {}

            ColumnLayout {
                id: content

                x: Math.max(Theme.margin, (scroller.width - width) / 2)
                y: Theme.margin
                width: Math.min(scroller.width - 2 * Theme.margin,
                                Theme.readingWidth + Theme.dialogWidth)
                spacing: Theme.spacingLarge

                // --- Header
                ColumnLayout {
                    spacing: Theme.spacing
                    Layout.fillWidth: true

                    Text {
                        objectName: "headline"
                        text: qsTr("What's this stone?")
                        color: Theme.text
                        font.pixelSize: Theme.fontLargeTitle
                        font.weight: Font.Bold
                        wrapMode: Text.WordWrap
                        Layout.fillWidth: true
                        Accessible.role: Accessible.Heading
                    }
                    Text {
                        text: qsTr("Add a photo, then answer a few quick questions. Each answer narrows the list far more than a photo can.")
                        color: Theme.textMuted
                        font.pixelSize: Theme.fontBody
                        wrapMode: Text.WordWrap
                        Layout.fillWidth: true
                    }
                    Rectangle {
                        objectName: "offlineBadge"
                        color: Theme.offlineFill
                        radius: Math.min(height / 2, Theme.corner)
                        implicitWidth: badgeRow.implicitWidth + 2 * Theme.spacing
                        implicitHeight: badgeRow.implicitHeight + Theme.spacing
                        Layout.maximumWidth: content.width

                        RowLayout {
                            id: badgeRow
                            anchors.centerIn: parent
                            width: Math.min(implicitWidth, parent.width - 2 * Theme.spacing)
                            spacing: Theme.spacingSmall

                            SymbolIcon {
                                symbol: "wifi.slash"
                                size: Theme.fontCaption + Theme.spacingSmall
                                color: Theme.offlineText
                            }
                            Text {
                                text: qsTr("Works offline — everything runs on this device.")
                                color: Theme.offlineText
                                font.pixelSize: Theme.fontCaption
                                font.weight: Font.DemiBold
                                wrapMode: Text.WordWrap
                                Layout.fillWidth: true
                            }
                        }
                    }
                }

                // --- First start: what to do, and where the samples are. Shown while the
                // history and the collection are empty and nothing is entered yet.
                Rectangle {
                    objectName: "firstStartGuide"
                    visible: AppModel.historyList.totalCount === 0
                             && AppModel.collection.totalCount === 0
                             && !AppModel.hasPhoto && !AppModel.preparingPhoto
                             && AppModel.answeredCount === 0
                    color: Theme.surface
                    border.width: Theme.hairlineWidth
                    border.color: Theme.hairline
                    radius: Theme.corner
                    implicitHeight: guideColumn.implicitHeight + 2 * Theme.margin
                    Layout.fillWidth: true

                    ColumnLayout {
                        id: guideColumn

                        anchors.fill: parent
                        anchors.margins: Theme.margin
                        spacing: Theme.spacing

                        RowLayout {
                            spacing: Theme.spacing
                            Layout.fillWidth: true

                            SymbolIcon {
                                symbol: "hand.wave"
                                size: Theme.iconSize + Theme.spacing
                                color: Theme.accent
                                Layout.alignment: Qt.AlignTop
                            }
                            Text {
                                text: qsTr("New here? Three steps to a name:")
                                color: Theme.text
                                font.pixelSize: Theme.fontHeadline
                                font.weight: Font.DemiBold
                                wrapMode: Text.WordWrap
                                Layout.fillWidth: true
                                Accessible.role: Accessible.Heading
                            }
                        }
                        Repeater {
                            model: [
                                qsTr("Add a photo of your stone: drop it on this window, or use Choose Photo…, Use Camera… or Paste."),
                                qsTr("Answer the guided questions you can test; leave the others at Not tested."),
                                qsTr("Press Identify to see the best matches.")
                            ]
                            delegate: RowLayout {
                                required property string modelData
                                required property int index

                                spacing: Theme.spacing
                                Layout.fillWidth: true

                                Text {
                                    text: (parent.index + 1) + "."
                                    color: Theme.accent
                                    font.pixelSize: Theme.fontBody
                                    font.weight: Font.DemiBold
                                    Layout.alignment: Qt.AlignTop
                                    Layout.preferredWidth: Theme.spacingLarge + Theme.spacing
                                }
                                Text {
                                    objectName: "firstStartStep"
                                    text: parent.modelData
                                    color: Theme.text
                                    font.pixelSize: Theme.fontBody
                                    wrapMode: Text.WordWrap
                                    Layout.fillWidth: true
                                }
                            }
                        }
                        Text {
                            objectName: "firstStartSamples"
                            visible: AppModel.hasSampleSet
                            text: qsTr("No stone at hand? Try a Sample Photo, or load the sample collection from Help › Load Sample Collection.")
                            color: Theme.textMuted
                            font.pixelSize: Theme.fontBody
                            wrapMode: Text.WordWrap
                            Layout.fillWidth: true
                        }
                    }
                }

                // --- Photo
                VxPanel {
                    objectName: "photoPanel"
                    radius: Theme.corner
                    padding: Theme.margin
                    Layout.fillWidth: true

                    // The photo beside its buttons, or above them where the screen is narrow
                    // (a large zoom).
                    GridLayout {
                        width: parent.width
                        columns: content.width >= Theme.readingWidth * 0.8 ? 2 : 1
                        columnSpacing: Theme.margin
                        rowSpacing: Theme.margin

                        Item {
                            id: frame

                            objectName: "photoFrame"
                            Layout.preferredWidth: Theme.iconLarge * 4
                            Layout.preferredHeight: Theme.iconLarge * 4
                            Layout.alignment: Qt.AlignTop

                            Rectangle {
                                anchors.fill: parent
                                anchors.margins: Theme.spacing
                                radius: Theme.corner / 2
                                color: dropArea.containsDrag ? Theme.selection : Theme.ground
                                clip: true

                                Image {
                                    id: photo

                                    objectName: "photoImage"
                                    anchors.fill: parent
                                    visible: AppModel.hasPhoto
                                    source: AppModel.hasPhoto
                                            ? "image://thumbnail/@session?" + AppModel.photoRevision : ""
                                    sourceSize.width: width * 2
                                    sourceSize.height: height * 2
                                    fillMode: Image.PreserveAspectCrop
                                    asynchronous: true
                                    cache: false
                                    Accessible.role: Accessible.Graphic
                                    Accessible.name: qsTr("Your specimen photo")
                                }
                                ColumnLayout {
                                    objectName: "dropPrompt"
                                    anchors.centerIn: parent
                                    width: parent.width - 2 * Theme.spacing
                                    visible: !AppModel.hasPhoto && !AppModel.preparingPhoto
                                    spacing: Theme.spacingSmall

                                    SymbolIcon {
                                        symbol: "photo"
                                        size: Theme.iconLarge
                                        color: dropArea.containsDrag ? Theme.accent : Theme.textMuted
                                        Layout.alignment: Qt.AlignHCenter
                                    }
                                    Text {
                                        text: qsTr("No photo yet")
                                        color: Theme.text
                                        font.pixelSize: Theme.fontBody
                                        font.weight: Font.DemiBold
                                        horizontalAlignment: Text.AlignHCenter
                                        wrapMode: Text.WordWrap
                                        Layout.fillWidth: true
                                    }
                                    Text {
                                        text: qsTr("Drop a photo here")
                                        color: Theme.textMuted
                                        font.pixelSize: Theme.fontCaption
                                        horizontalAlignment: Text.AlignHCenter
                                        wrapMode: Text.WordWrap
                                        Layout.fillWidth: true
                                    }
                                }
                                Rectangle {
                                    objectName: "preparingPhoto"
                                    anchors.fill: parent
                                    visible: AppModel.preparingPhoto
                                    color: Theme.scrim

                                    ColumnLayout {
                                        anchors.centerIn: parent
                                        spacing: Theme.spacingSmall

                                        BusyIndicator {
                                            running: AppModel.preparingPhoto
                                            Layout.alignment: Qt.AlignHCenter
                                        }
                                        Text {
                                            text: qsTr("Preparing photo…")
                                            color: Theme.text
                                            font.pixelSize: Theme.fontCaption
                                            Layout.alignment: Qt.AlignHCenter
                                        }
                                    }
                                }
                            }
                            ViewfinderCorners {
                                anchors.fill: parent
                                color: dropArea.containsDrag || AppModel.hasPhoto ? Theme.accent
                                                                              : Theme.textMuted
                            }
                        }

                        ColumnLayout {
                            spacing: Theme.spacing
                            Layout.fillWidth: true
                            Layout.alignment: Qt.AlignTop

                            RowLayout {
                                objectName: "colorSwatchRow"
                                visible: AppModel.hasPhoto && AppModel.photoColor !== ""
                                spacing: Theme.spacing
                                Layout.fillWidth: true

                                Rectangle {
                                    objectName: "colorSwatch"
                                    implicitWidth: Theme.rowHeight + Theme.spacing
                                    implicitHeight: implicitWidth
                                    radius: Theme.corner / 2
                                    color: AppModel.photoColor !== "" ? AppModel.photoColor : Theme.clear
                                    border.width: Theme.hairlineWidth
                                    border.color: Theme.hairline
                                    Accessible.role: Accessible.Graphic
                                    Accessible.name: qsTr("Center color read from photo")
                                }
                                ColumnLayout {
                                    spacing: 0
                                    Layout.fillWidth: true
                                    Text {
                                        text: qsTr("Center color read from photo")
                                        color: Theme.text
                                        font.pixelSize: Theme.fontBody
                                        wrapMode: Text.WordWrap
                                        Layout.fillWidth: true
                                    }
                                    Text {
                                        text: AppModel.photoColor
                                        color: Theme.textMuted
                                        font.pixelSize: Theme.fontCaption
                                    }
                                }
                            }
                            RowLayout {
                                spacing: Theme.spacing
                                Layout.fillWidth: true

                                SymbolIcon {
                                    symbol: "camera.viewfinder"
                                    size: Theme.fontBody + Theme.spacingSmall
                                    color: Theme.textMuted
                                    Layout.alignment: Qt.AlignTop
                                }
                                Text {
                                    objectName: "photoTip"
                                    text: qsTr("Daylight works best. Wet the surface slightly to show true color, and fill the center of the frame.")
                                    color: Theme.textMuted
                                    font.pixelSize: Theme.fontCaption
                                    wrapMode: Text.WordWrap
                                    Layout.fillWidth: true
                                }
                            }
                            RowLayout {
                                visible: AppModel.photoError !== ""
                                spacing: Theme.spacing
                                Layout.fillWidth: true

                                SymbolIcon {
                                    symbol: "exclamationmark.triangle"
                                    size: Theme.fontBody + Theme.spacingSmall
                                    color: Theme.warn
                                    Layout.alignment: Qt.AlignTop
                                }
                                Text {
                                    objectName: "photoError"
                                    text: AppModel.photoError
                                    color: Theme.warn
                                    font.pixelSize: Theme.fontBody
                                    wrapMode: Text.WordWrap
                                    Layout.fillWidth: true
                                    Accessible.role: Accessible.AlertMessage
                                }
                            }
                            PhotoSourceButtons {
                                hasPhoto: AppModel.hasPhoto
                                Layout.fillWidth: true
                                Layout.topMargin: Theme.spacingSmall
                                onChooseRequested: screen.choosePhotoRequested()
                                onCameraRequested: AppModel.showCamera = true
                                onPasteRequested: screen.paste()
                                onRemoveRequested: AppModel.clearPhoto()
                            }
                            VxChromeButton {
                                objectName: "sampleButton"
                                visible: AppModel.hasSampleSet
                                text: qsTr("Try a Sample Photo")
                                glyph: Icons.glyph("photo.stack")
                                glyphFamily: Icons.family
                                ToolTip.visible: hovered
                                ToolTip.delay: 600
                                ToolTip.text: qsTr("Identify one of the built-in sample photos (freely licensed, see Help > Sample Photo Credits)")
                                onClicked: screen.trySample()
                            }
                        }
                    }
                }

                // --- Guided questions
                VxPanel {
                    objectName: "questionsPanel"
                    radius: Theme.corner
                    padding: Theme.margin
                    Layout.fillWidth: true

                    ColumnLayout {
                        width: parent.width
                        spacing: Theme.margin

                        RowLayout {
                            spacing: Theme.spacing
                            Layout.fillWidth: true

                            Text {
                                text: qsTr("Guided questions")
                                color: Theme.text
                                font.pixelSize: Theme.fontTitle
                                font.weight: Font.DemiBold
                                wrapMode: Text.WordWrap
                                Layout.fillWidth: true
                                Accessible.role: Accessible.Heading
                            }
                            Text {
                                objectName: "answeredCount"
                                text: AppModel.answeredCount + qsTr(" of ") + AppModel.questions.length
                                      + qsTr(" answered")
                                color: Theme.textMuted
                                font.pixelSize: Theme.fontCaption
                            }
                        }
                        RowLayout {
                            readonly property var question: AppModel.questions.find(
                                q => q.raw === AppModel.suggestedQuestion)

                            visible: question !== undefined
                            spacing: Theme.spacing
                            Layout.fillWidth: true

                            SymbolIcon {
                                symbol: "lightbulb"
                                size: Theme.fontBody + Theme.spacingSmall
                                color: Theme.gold
                            }
                            Text {
                                objectName: "suggestion"
                                text: qsTr("Most helpful next: ") + (parent.question ? parent.question.title : "")
                                color: Theme.text
                                font.pixelSize: Theme.fontBody
                                wrapMode: Text.WordWrap
                                Layout.fillWidth: true
                            }
                        }
                        Repeater {
                            model: AppModel.questions
                            delegate: QuestionPicker {
                                required property var modelData
                                question: modelData
                                suggested: modelData.raw === AppModel.suggestedQuestion
                                stacked: content.width < Theme.dialogWidth * 2
                                onSubmitted: screen.identify()
                                Layout.fillWidth: true
                            }
                        }
                    }
                }

                VxChromeButton {
                    objectName: "identifyButton"
                    text: AppModel.hasRun ? qsTr("Update Matches") : qsTr("Identify")
                    prominent: true
                    enabled: AppModel.canIdentify
                    glyph: Icons.glyph("magnifyingglass")
                    glyphFamily: Icons.family
                    horizontalPadding: Theme.spacingLarge * 2
                    Layout.alignment: Qt.AlignHCenter
                    onClicked: screen.identify()
                }

                // --- Results
                ColumnLayout {
                    id: results

                    objectName: "results"
                    visible: AppModel.hasResult
                    spacing: Theme.spacing
                    Layout.fillWidth: true

                    Flow {
                        spacing: Theme.spacing
                        Layout.fillWidth: true

                        Text {
                            text: qsTr("Best matches")
                            color: Theme.text
                            font.pixelSize: Theme.fontTitle
                            font.weight: Font.DemiBold
                            Accessible.role: Accessible.Heading
                        }
                        ConfidenceBadge {
                            objectName: "levelBadge"
                            level: AppModel.levelRaw
                            title: AppModel.levelTitle
                        }
                    }
                    Text {
                        objectName: "levelExplanation"
                        text: AppModel.levelExplanation
                        color: Theme.textMuted
                        font.pixelSize: Theme.fontBody
                        wrapMode: Text.WordWrap
                        Layout.fillWidth: true
                    }
                    RowLayout {
                        visible: AppModel.nothingFitsWell
                        spacing: Theme.spacing
                        Layout.fillWidth: true

                        SymbolIcon {
                            symbol: "exclamationmark.triangle"
                            size: Theme.fontBody + Theme.spacingSmall
                            color: Theme.warn
                            Layout.alignment: Qt.AlignTop
                        }
                        Text {
                            objectName: "nothingFits"
                            text: qsTr("No species in the library fits every answer. Re-check a test, or your stone may not be in Quarrydex's ")
                                  + AppModel.speciesCount + qsTr("-species library.")
                            color: Theme.warn
                            font.pixelSize: Theme.fontBody
                            wrapMode: Text.WordWrap
                            Layout.fillWidth: true
                        }
                    }
                    Text {
                        objectName: "answersOnly"
                        visible: AppModel.hasResult && !AppModel.usedPhotoColor
                        text: qsTr("Matched on your answers only. Add a photo for a closer match.")
                        color: Theme.textMuted
                        font.pixelSize: Theme.fontBody
                        wrapMode: Text.WordWrap
                        Layout.fillWidth: true
                    }
                    Repeater {
                        model: AppModel.candidates
                        delegate: ResultRow {
                            Layout.fillWidth: true
                            onOpenRequested: (specimenId, confidence) =>
                                             screen.nav.push("specimen", specimenId, confidence)
                        }
                    }
                    Text {
                        objectName: "sharesNote"
                        text: qsTr("Percentages are shares among Quarrydex's library, not lab certainty. Valuable or important specimens should be confirmed by a geologist or gemologist.")
                        color: Theme.textMuted
                        font.pixelSize: Theme.fontCaption
                        wrapMode: Text.WordWrap
                        Layout.fillWidth: true
                        Layout.topMargin: Theme.spacing
                    }
                }
            }
        }

        // Photos dropped anywhere on the screen: a local file, else image data. Anything else
        // (text, web addresses) is not taken.
        DropArea {
            id: dropArea

            objectName: "photoDrop"
            anchors.fill: parent
            onEntered: drag => {
                drag.accepted = screen.droppedFile(drag.urls) !== ""
                                || PhotoSources.imageFormat(drag.formats) !== ""
            }
            onDropped: event => {
                const file = screen.droppedFile(event.urls)
                const format = PhotoSources.imageFormat(event.formats)
                if (file !== "") {
                    AppModel.setPhotoFromFileAsync(file)
                } else if (format !== "") {
                    AppModel.setPhotoAsync(event.getDataAsArrayBuffer(format))
                } else {
                    return
                }
                event.accept(Qt.CopyAction)
            }
        }
    }

    Loader {
        id: detail

        objectName: "identifyDetail"
        anchors.fill: parent
        active: screen.showingDetail && screen.nav.kind === "specimen"
        visible: active
        focus: active
        sourceComponent: SpecimenDetailScreen {
            specimenId: screen.nav.itemId
            confidence: screen.nav.confidence
            // The session photo belongs to a result, not to a look-alike opened from it.
            showSessionPhoto: screen.nav.confidence >= 0
            onBackRequested: screen.nav.pop()
            onOpenSpecimen: specimenId => screen.nav.push("specimen", specimenId)
        }
    }

    // A new session leaves no result to come back to.
    Connections {
        target: AppModel
        function onResultChanged() {
            if (!AppModel.hasResult) {
                screen.nav.clear()
            }
        }
    }
}
