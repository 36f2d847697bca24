import QtQuick
import Velmo

/// One finished event.
Rectangle {
    id: card

    required property string id
    required property string symbol
    required property string title
    required property string detail
    required property string time
    required property string style
    required property bool hasFiles

    signal revealed

    radius: Theme.cardRadius
    color: Theme.surface
    Accessible.role: Accessible.ListItem
    Accessible.name: title + ", " + time

    Symbol {
        id: glyph
        x: Theme.cardPadding
        height: parent.height
        name: card.symbol
        color: Theme.styles[card.style]
    }

    Column {
        anchors.left: glyph.right
        anchors.leftMargin: Theme.gap
        anchors.right: reveal.visible ? reveal.left : parent.right
        anchors.rightMargin: reveal.visible ? Theme.grid : Theme.cardPadding
        anchors.verticalCenter: parent.verticalCenter

        Label {
            width: parent.width
            text: card.title
            font.weight: Font.Medium
        }
        Label {
            width: parent.width
            text: card.detail.length > 0 ? card.time + " · " + card.detail : card.time
            color: Theme.secondaryText
            font.pixelSize: Theme.smallSize
        }
    }

    IconButton {
        id: reveal
        anchors.right: parent.right
        anchors.rightMargin: Theme.grid + 2
        anchors.verticalCenter: parent.verticalCenter
        visible: card.hasFiles
        name: "Mostrar no Finder"
        symbol: "folder"
        onTriggered: card.revealed()
    }
}
