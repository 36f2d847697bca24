import QtQuick
import Velmo

/// What is in a copy, as far as a tile shows it.
Item {
    id: preview

    required property string kind
    required property string title
    required property string text
    required property string picture
    required property string swatch
    readonly property bool hasPicture: picture.length > 0
    readonly property bool hasTitle: kind !== "text"

    Label {
        anchors.fill: parent
        visible: preview.kind === "text"
        text: visible ? preview.text : ""
        font.pixelSize: Theme.smallSize
        wrapMode: Text.Wrap
        verticalAlignment: Text.AlignTop
        Accessible.ignored: true
    }

    Image {
        width: parent.width
        height: name.y - Theme.grid
        visible: preview.hasPicture
        fillMode: Image.PreserveAspectFit
        horizontalAlignment: Image.AlignLeft
        sourceSize.width: Theme.clipWidth * Screen.devicePixelRatio
        sourceSize.height: Theme.thumbnailSize * Screen.devicePixelRatio
        source: preview.picture
        opacity: status === Image.Ready ? 1 : 0

        Behavior on opacity {
            NumberAnimation {
                duration: Theme.fadeIn
            }
        }
    }
    Rectangle {
        width: parent.width
        height: name.y - Theme.grid
        visible: preview.swatch.length > 0
        radius: Theme.controlRadius
        color: visible ? preview.swatch : "transparent"
        border.width: 1
        border.color: Theme.hairline
    }
    Symbol {
        visible: preview.kind === "link"
        name: "link"
        color: Theme.secondaryText
    }

    Label {
        id: name
        y: preview.kind === "link" ? Theme.symbolSize + Theme.grid : parent.height - height - (more.visible ? more.height : 0)
        width: parent.width
        visible: preview.hasTitle
        text: visible ? preview.title : ""
        elide: preview.kind === "files" ? Text.ElideMiddle : Text.ElideRight
        font.pixelSize: Theme.smallSize
        font.weight: preview.kind === "image" ? Font.Normal : Font.Medium
        color: preview.kind === "image" ? Theme.secondaryText : Theme.text
        Accessible.ignored: true
    }
    Label {
        id: more
        y: name.y + name.height
        width: parent.width
        height: preview.kind === "link" ? parent.height - y : implicitHeight
        visible: preview.hasTitle && preview.text.length > 0
        text: visible ? preview.text : ""
        color: Theme.secondaryText
        font.pixelSize: Theme.captionSize
        wrapMode: preview.kind === "link" ? Text.WrapAnywhere : Text.NoWrap
        verticalAlignment: Text.AlignTop
        Accessible.ignored: true
    }
}
