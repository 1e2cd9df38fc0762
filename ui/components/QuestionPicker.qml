import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quarrydex

// One guided question: its symbol, title and hint, and a picker offering "Not tested"
// followed by the question's answers. The picker shows and writes AppModel's answer.
GridLayout {
    id: row

    // {raw, title, hint, symbol, options: [{raw, title}]} from AppModel.questions.
    required property var question
    property bool suggested: false
    // The picker under the title and hint rather than beside them (a narrow screen).
    property bool stacked: false
    readonly property alias picker: picker

    // Return or Enter on the closed picker: the screen's default action.
    signal submitted()

    columns: stacked ? 2 : 3
    columnSpacing: Theme.spacing
    rowSpacing: Theme.spacingSmall

    SymbolIcon {
        symbol: row.question.symbol
        color: row.suggested ? Theme.gold : Theme.accent
        Layout.alignment: Qt.AlignTop
        Layout.preferredWidth: Theme.iconSize + Theme.spacingSmall
        Layout.topMargin: Theme.spacingSmall
    }
    ColumnLayout {
        spacing: Theme.spacingSmall
        Layout.fillWidth: true
        Layout.alignment: Qt.AlignTop

        Text {
            text: row.question.title
            color: Theme.text
            font.pixelSize: Theme.fontBody
            font.weight: Font.DemiBold
            wrapMode: Text.WordWrap
            Layout.fillWidth: true
        }
        Text {
            text: row.question.hint
            color: Theme.textMuted
            font.pixelSize: Theme.fontCaption
            wrapMode: Text.WordWrap
            Layout.fillWidth: true
        }
    }
    ComboBox {
        id: picker

        objectName: "picker_" + row.question.raw
        readonly property var choices: row.question.options
        // 0 is "Not tested"; answer i of the question is i + 1.
        readonly property int answerIndex: {
            const raw = AppModel.answers[row.question.raw]
            return choices.findIndex(o => o.raw === raw) + 1
        }

        model: [qsTr("Not tested")].concat(choices.map(o => o.title))
        currentIndex: answerIndex
        onActivated: index => AppModel.setAnswer(row.question.raw,
                                                 index > 0 ? choices[index - 1].raw : "")
        font.pixelSize: Theme.fontBody
        leftPadding: Theme.spacing
        Layout.row: row.stacked ? 1 : 0
        Layout.column: row.stacked ? 1 : 2
        Layout.fillWidth: row.stacked
        Layout.preferredWidth: row.stacked ? -1 : Theme.dialogWidth
        Layout.maximumWidth: Theme.dialogWidth
        Layout.alignment: Qt.AlignTop
        Accessible.name: row.question.title
        Keys.onReturnPressed: row.submitted()
        Keys.onEnterPressed: row.submitted()

        background: Rectangle {
            implicitHeight: Theme.rowHeight
            radius: Theme.spacing
            color: picker.down ? Theme.surfaceRaised
                 : picker.hovered ? Qt.lighter(Theme.surface, 1.25) : Theme.surface
            border.width: Theme.hairlineWidth
            border.color: picker.currentIndex > 0 ? Theme.accent : Theme.hairline

            FocusRing {
                shown: picker.activeFocus && VxFocusRings.keyboard
                radius: Theme.spacing + Theme.spacingSmall
            }
        }
    }
}
