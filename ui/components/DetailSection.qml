import QtQuick
import QtQuick.Layouts
import Quarrydex

// A titled block of a detail screen: the heading, then either `body` as a paragraph or the
// section's own content (the default property), laid out in a column.
ColumnLayout {
    id: section

    property string heading: ""
    property string body: ""
    default property alias content: extra.data

    spacing: Theme.spacing

    Text {
        objectName: "sectionHeading"
        visible: section.heading !== ""
        text: section.heading
        color: Theme.text
        font.pixelSize: Theme.fontHeadline
        font.weight: Font.DemiBold
        wrapMode: Text.WordWrap
        Layout.fillWidth: true
        Accessible.role: Accessible.Heading
    }
    Text {
        objectName: "sectionBody"
        visible: section.body !== ""
        text: section.body
        color: Theme.text
        font.pixelSize: Theme.fontBody
        wrapMode: Text.WordWrap
        lineHeight: 1.15
        Layout.fillWidth: true
    }
    ColumnLayout {
        id: extra
        spacing: Theme.spacing
        Layout.fillWidth: true
    }
}
