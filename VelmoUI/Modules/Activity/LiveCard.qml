import QtQuick
import Velmo

/// One live activity with its progress.
Rectangle {
    id: card

    required property string id
    required property string symbol
    required property string title
    required property string detail
    required property string value
    required property real progress
    required property bool isCancellable
    property color accent: Theme.text

    signal cancelled

    width: 250
    radius: Theme.cardRadius
    color: Theme.surface
    Accessible.role: Accessible.ListItem
    Accessible.name: title + " " + value

    Symbol {
        id: glyph
        x: Theme.cardPadding
        y: Theme.cardPadding
        name: card.symbol
        color: card.accent
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
        }
        Label {
            width: parent.width
            text: card.detail
            visible: text.length > 0
            color: Theme.secondaryText
            font.pixelSize: Theme.smallSize
        }
    }

    Label {
        x: Theme.cardPadding
        anchors.bottom: bar.visible ? bar.top : parent.bottom
        anchors.bottomMargin: bar.visible ? 2 * Theme.grid : Theme.cardPadding
        text: card.value
        font.pixelSize: Theme.numberSize
        font.weight: Font.Medium
    }

    ActionButton {
        anchors.right: parent.right
        anchors.rightMargin: Theme.cardPadding
        anchors.bottom: bar.visible ? bar.top : parent.bottom
        anchors.bottomMargin: bar.visible ? 2 * Theme.grid : Theme.cardPadding
        visible: card.isCancellable
        name: "Cancelar"
        onTriggered: card.cancelled()
    }

    Rectangle {
        id: bar
        x: Theme.cardPadding
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Theme.cardPadding
        width: parent.width - 2 * x
        height: 4
        radius: 2
        color: Theme.surfaceSelected
        visible: card.progress >= 0

        Rectangle {
            width: parent.width * Math.max(0, Math.min(1, card.progress))
            height: parent.height
            radius: 2
            color: card.accent

            Behavior on width {
                NumberAnimation {
                    duration: 150
                }
            }
        }
    }
}
