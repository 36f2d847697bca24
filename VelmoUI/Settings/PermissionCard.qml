import QtQuick
import Velmo.Design
import Velmo.Settings

/// A permission: what it is for, how it stands and how to change that.
Item {
    id: card

    required property string title
    required property string symbol
    required property string explanation
    required property string usedBy
    required property string status
    required property int style
    required property bool canRequest
    required property string error
    required property string spoken

    signal requested
    signal opened

    implicitHeight: texts.height + 2 * Theme.cardPadding
    Accessible.role: Accessible.ListItem
    Accessible.name: spoken
    Accessible.description: explanation

    Symbol {
        id: glyph
        x: Theme.cardPadding
        y: Theme.cardPadding
        width: Theme.symbolSize
        name: card.symbol
        color: Theme.secondaryText
    }

    Column {
        id: texts
        anchors.left: glyph.right
        anchors.leftMargin: Theme.cardPadding
        anchors.right: actions.left
        anchors.rightMargin: Theme.cardPadding
        y: Theme.cardPadding
        spacing: Theme.grid / 2

        Row {
            spacing: 2 * Theme.grid

            Label {
                id: name
                text: card.title
                font.weight: Font.Medium
                Accessible.ignored: true
            }
            Label {
                anchors.baseline: name.baseline
                text: card.status
                color: Theme.feedbackColor(card.style)
                font.pixelSize: Theme.smallSize
                Accessible.ignored: true
            }
        }
        Label {
            width: parent.width
            text: card.explanation
            color: Theme.secondaryText
            font.pixelSize: Theme.smallSize
            wrapMode: Text.Wrap
            elide: Text.ElideNone
            Accessible.ignored: true
        }
        Label {
            width: parent.width
            text: card.usedBy
            color: Theme.tertiaryText
            font.pixelSize: Theme.smallSize
            wrapMode: Text.Wrap
            elide: Text.ElideNone
        }
        Label {
            width: parent.width
            visible: text.length > 0
            text: card.error
            color: Theme.error
            font.pixelSize: Theme.smallSize
            wrapMode: Text.Wrap
            elide: Text.ElideNone
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
        }
    }

    Row {
        id: actions
        anchors.right: parent.right
        anchors.rightMargin: Theme.cardPadding
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2 * Theme.grid

        ActionButton {
            visible: card.canRequest
            name: "Permitir"
            onTriggered: card.requested()
        }
        ActionButton {
            name: PlatformWords.systemSettings
            onTriggered: card.opened()
        }
    }
}
