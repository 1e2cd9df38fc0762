import QtQuick
import QtQuick.Layouts
import Quarrydex

// Below the section list: the version, the maker and a link to the website.
ColumnLayout {
    spacing: Theme.spacingSmall / 2

    Text {
        text: Branding.appName + " " + Branding.version
        color: Theme.text
        font.pixelSize: Theme.fontCaption
        font.weight: Font.DemiBold
    }
    Text {
        text: Branding.byline
        color: Theme.textMuted
        font.pixelSize: Theme.fontCaption2
    }
    LinkText {
        objectName: "websiteLink"
        text: Branding.websiteText
        url: Branding.website
        font.pixelSize: Theme.fontCaption2
    }
}
