import QtQuick
import Velmo.Design
import Velmo.Modules.Clipboard

/// What is in a copy, as far as a tile shows it.
Loader {
    id: preview

    required property string title
    required property string text
    required property string picture
    required property string swatch
    required property bool isLink
    required property bool isImage

    sourceComponent: isLink ? link : picture.length > 0 || swatch.length > 0 ? things : words

    Component {
        id: words

        Label {
            text: preview.text
            font.pixelSize: Theme.smallSize
            wrapMode: Text.Wrap
            verticalAlignment: Text.AlignTop
            Accessible.ignored: true
        }
    }

    Component {
        id: link

        Item {
            Symbol {
                id: symbol
                name: "link"
                color: Theme.secondaryText
            }
            Label {
                id: host
                y: symbol.height + Theme.grid
                width: parent.width
                text: preview.title
                font.pixelSize: Theme.smallSize
                font.weight: Font.Medium
                Accessible.ignored: true
            }
            Label {
                y: host.y + host.height
                width: parent.width
                height: parent.height - y
                text: preview.text
                color: Theme.secondaryText
                font.pixelSize: Theme.captionSize
                wrapMode: Text.WrapAnywhere
                verticalAlignment: Text.AlignTop
                Accessible.ignored: true
            }
        }
    }

    Component {
        id: things

        Item {
            Rectangle {
                width: parent.width
                height: name.y - Theme.grid
                visible: preview.swatch.length > 0
                radius: Theme.controlRadius
                color: visible ? preview.swatch : "transparent"
                border.width: 1
                border.color: Theme.hairline
            }
            Image {
                width: parent.width
                height: name.y - Theme.grid
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
            Label {
                id: name
                y: parent.height - height - (preview.text.length > 0 ? names.height : 0)
                width: parent.width
                text: preview.title
                elide: Text.ElideMiddle
                font.pixelSize: Theme.smallSize
                font.weight: preview.isImage ? Font.Normal : Font.Medium
                color: preview.isImage ? Theme.secondaryText : Theme.text
                Accessible.ignored: true
            }
            Label {
                id: names
                y: parent.height - height
                width: parent.width
                visible: text.length > 0
                text: preview.text
                color: Theme.secondaryText
                font.pixelSize: Theme.captionSize
                Accessible.ignored: true
            }
        }
    }
}
