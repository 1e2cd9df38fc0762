import QtQuick
import Quarrydex

// A framed panel: the content inside `padding`, on a rounded plate shaded from the kit's
// panelTop to panelBottom colours, outlined by its rim.
Item {
    id: panel

    property real radius: 20
    property real padding: 12
    default property alias content: inner.data

    implicitWidth: inner.childrenRect.width + 2 * padding
    implicitHeight: inner.childrenRect.height + 2 * padding

    // A typed value, not a var: a var property is already gone while a panel that is being
    // destroyed re-evaluates its colours, which printed TypeErrors.
    readonly property vxKitTheme kit: OrloKitHost.theme

    // The rim: a one-pixel outline, brighter along the top edge.
    Rectangle {
        anchors.fill: parent
        radius: panel.radius
        gradient: Gradient {
            GradientStop { position: 0; color: Qt.lighter(panel.kit.rim, 1.5) }
            GradientStop { position: 1; color: panel.kit.rim }
        }
    }
    Rectangle {
        anchors.fill: parent
        anchors.margins: 1
        radius: Math.max(0, panel.radius - 1)
        gradient: Gradient {
            GradientStop { position: 0; color: panel.kit.panelTop }
            GradientStop { position: 1; color: panel.kit.panelBottom }
        }
    }
    Item {
        id: inner
        anchors.fill: parent
        anchors.margins: panel.padding
    }
}
