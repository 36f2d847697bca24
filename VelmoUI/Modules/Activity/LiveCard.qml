import QtQuick
import Velmo.Design
import Velmo.Modules.Activity

/// One live activity with its progress.
Card {
    id: card

    required property int index
    required property string id
    required property string symbol
    required property string title
    required property string detail
    required property string value
    required property real progress
    required property bool isCancellable
    required property string spoken

    signal cancelled

    name: spoken
    onActiveFocusChanged: if (activeFocus)
        ListView.view.currentIndex = index

    Symbol {
        id: glyph
        x: Theme.cardPadding
        y: Theme.cardPadding
        name: card.symbol
        color: Theme.accent
    }

    Column {
        anchors.left: glyph.right
        anchors.leftMargin: Theme.gap
        anchors.right: parent.right
        anchors.rightMargin: Theme.cardPadding
        y: Theme.cardPadding

        Label {
            width: parent.width
            text: card.title
            font.weight: Font.Medium
            Accessible.ignored: true
        }
        Label {
            width: parent.width
            text: card.detail
            visible: text.length > 0
            color: Theme.secondaryText
            font.pixelSize: Theme.smallSize
        }
    }

    // The bar's place stays free without one, so that the numbers of all cards stand in line.
    Item {
        id: numbers
        x: Theme.cardPadding
        y: bar.y - height - 2 * Theme.grid
        width: parent.width - 2 * x
        height: Theme.controlHeight

        NumberLabel {
            anchors.verticalCenter: parent.verticalCenter
            text: card.value
            size: Theme.numberSize
        }

        ActionButton {
            anchors.right: parent.right
            visible: card.isCancellable
            name: "Cancelar"
            onTriggered: card.cancelled()
        }
    }

    ProgressBar {
        id: bar
        x: Theme.cardPadding
        y: parent.height - height - Theme.cardPadding
        width: parent.width - 2 * x
        visible: card.progress >= 0
        progress: card.progress
    }
}
