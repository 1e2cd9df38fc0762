import QtQuick
import QtQuick.Window
import Quarrydex

// A photo of the store by its bare file name, decoded off the GUI thread at the size shown
// (see ThumbnailProvider). Until it is there, and when there is none or it cannot be read,
// the species' swatch stands in.
Item {
    id: thumb

    // Bare file name in the store's photo folder, "@session" for the current identification's
    // photo, "" for none.
    property string photoFile: ""
    // Appended to the image address so that a photo replaced under the same name reloads.
    property string revision: ""
    property string colorHex: ""
    property real size: Theme.iconLarge
    // Square thumbnails crop; larger photos are shown whole.
    property bool crop: true

    readonly property bool showsPhoto: image.status === Image.Ready && image.implicitWidth > 0

    implicitWidth: size
    implicitHeight: size

    SpecimenSwatch {
        objectName: "thumbnailSwatch"
        anchors.fill: parent
        visible: !thumb.showsPhoto
        colorHex: thumb.colorHex
        size: Math.min(thumb.width, thumb.height)
    }

    Image {
        id: image
        objectName: "thumbnailImage"
        anchors.fill: parent
        visible: thumb.showsPhoto
        asynchronous: true
        fillMode: thumb.crop ? Image.PreserveAspectCrop : Image.PreserveAspectFit
        // Decoded at the size on screen: the zoom and the screen's pixel density included.
        readonly property real density: VxZoom.value * Screen.devicePixelRatio
        sourceSize.width: Math.ceil(thumb.width * density)
        sourceSize.height: thumb.crop ? Math.ceil(thumb.height * density) : 0
        source: thumb.photoFile === "" ? ""
              : "image://thumbnail/" + thumb.photoFile
                + (thumb.revision === "" ? "" : "?" + thumb.revision)
    }

    Rectangle {
        visible: thumb.showsPhoto && thumb.crop
        anchors.fill: parent
        color: Theme.clear
        radius: Math.round(Math.min(thumb.width, thumb.height) / 8)
        border.width: Theme.hairlineWidth
        border.color: Theme.hairline
    }

    Accessible.ignored: true
}
