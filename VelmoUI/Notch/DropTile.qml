import QtQuick
import Velmo.Design
import Velmo.Notch

/// One dropped thing.
Card {
    id: tile

    required property int index
    required property string id
    required property string symbol
    required property string title
    required property string detail
    required property url image
    required property string removal

    signal removed

    name: title
    width: 148
    onActiveFocusChanged: if (activeFocus)
        ListView.view.currentIndex = index
    Keys.onDeletePressed: removed()

    Item {
        x: Theme.cardPadding
        y: Theme.cardPadding
        width: parent.width - 2 * x
        height: texts.y - y - 2 * Theme.grid

        Image {
            id: thumbnail
            anchors.fill: parent
            source: tile.image
            sourceSize.width: 256
            sourceSize.height: 256
            asynchronous: true
            fillMode: Image.PreserveAspectFit
        }
        Symbol {
            anchors.centerIn: parent
            visible: thumbnail.status !== Image.Ready && thumbnail.status !== Image.Loading
            name: tile.symbol
            size: Theme.tileSymbolSize
            color: Theme.secondaryText
        }
    }

    Column {
        id: texts
        x: Theme.cardPadding
        y: parent.height - height - Theme.gap
        width: parent.width - 2 * x

        Label {
            width: parent.width
            text: tile.title
            font.pixelSize: Theme.smallSize
            font.weight: Font.Medium
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }
        Label {
            width: parent.width
            text: tile.detail
            font.pixelSize: Theme.captionSize
            color: Theme.secondaryText
        }
    }

    IconButton {
        id: remove
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: Theme.iconInset
        name: tile.removal
        symbol: "xmark.circle.fill"
        visible: name.length > 0
        opacity: tile.hovered || activeFocus ? 1 : 0
        onTriggered: tile.removed()

        Behavior on opacity {
            NumberAnimation {
                duration: Theme.hover
            }
        }
    }
}
