import QtQuick
import Velmo

/// What was dropped, as tiles.
Item {
    id: result

    required property NotchContent content

    Item {
        id: header
        x: Theme.gap
        y: result.content.notchHeight
        width: result.width - 2 * x
        height: Theme.controlHeight

        Label {
            x: Theme.grid
            height: parent.height
            text: result.content.droppedTitle
            font.weight: Font.DemiBold
        }

        IconButton {
            anchors.right: parent.right
            name: "Fechar"
            symbol: "xmark"
            onTriggered: result.content.close()
        }
    }

    CardList {
        x: Theme.gap
        y: header.y + header.height + Theme.grid
        width: result.width - 2 * x
        height: result.height - y - Theme.gap
        model: result.content.droppedItems

        delegate: Rectangle {
            id: tile

            required property string id
            required property string symbol
            required property string title
            required property string detail
            required property url image

            width: 148
            height: ListView.view.height
            radius: Theme.cardRadius
            color: hover.hovered ? Theme.surfaceHover : Theme.surface
            Accessible.role: Accessible.ListItem
            Accessible.name: title

            HoverHandler {
                id: hover
            }

            Item {
                id: picture
                x: Theme.cardPadding
                y: Theme.cardPadding
                width: parent.width - 2 * x
                height: parent.height - texts.height - 2 * Theme.cardPadding - Theme.grid

                Image {
                    id: thumbnail
                    anchors.fill: parent
                    source: tile.image
                    sourceSize: Qt.size(256, 256)
                    asynchronous: true
                    fillMode: Image.PreserveAspectFit
                }
                Symbol {
                    anchors.centerIn: parent
                    visible: thumbnail.status !== Image.Ready
                    name: tile.symbol
                    size: 40
                    color: Theme.secondaryText
                }
            }

            Column {
                id: texts
                x: Theme.cardPadding
                anchors.bottom: parent.bottom
                anchors.bottomMargin: Theme.cardPadding
                width: parent.width - 2 * x

                Label {
                    width: parent.width
                    text: tile.title
                    font.pixelSize: Theme.smallSize
                    font.weight: Font.Medium
                    elide: Text.ElideMiddle
                }
                Label {
                    width: parent.width
                    text: tile.detail
                    font.pixelSize: Theme.captionSize
                    color: Theme.secondaryText
                }
            }

            IconButton {
                anchors.right: parent.right
                anchors.top: parent.top
                anchors.margins: Theme.grid
                name: "Remover " + tile.title
                symbol: "xmark.circle.fill"
                opacity: hover.hovered || activeFocus ? 1 : 0
                onTriggered: result.content.removeDropped(tile.id)
            }
        }
    }
}
