import QtQuick
import Velmo.Design
import Velmo.Modules.Activity

/// One finished event.
Card {
    id: card

    required property int index
    required property string id
    required property string symbol
    required property string title
    required property string summary
    required property int style
    required property bool hasFiles
    required property string spoken

    signal revealed

    name: spoken
    onActiveFocusChanged: if (activeFocus)
        GridView.view.currentIndex = index

    Symbol {
        id: glyph
        x: Theme.cardPadding
        height: parent.height
        name: card.symbol
        color: Theme.feedbackColor(card.style)
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
            Accessible.ignored: true
        }
        Label {
            width: parent.width
            text: card.summary
            color: Theme.secondaryText
            font.pixelSize: Theme.smallSize
            Accessible.ignored: true
        }
    }

    IconButton {
        id: reveal
        anchors.right: parent.right
        anchors.rightMargin: Theme.iconInset
        anchors.verticalCenter: parent.verticalCenter
        visible: card.hasFiles
        name: PlatformWords.showInFolder
        symbol: "folder"
        onTriggered: card.revealed()

        Tip {
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            anchors.rightMargin: parent.width + Theme.grid
            shown: reveal.hovered
            text: reveal.name
        }
    }
}
