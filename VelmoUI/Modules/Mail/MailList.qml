import QtQuick
import Velmo.Design
import Velmo.Modules.Mail

/// The messages, newest first, and below what isn't right with the accounts.
FocusScope {
    id: list

    required property MailPageModel page

    ListView {
        id: rows

        readonly property int leastRow: 3 * Theme.controlHeight / 2
        // No row is cut: those that fit share the height.
        readonly property int fitting: Math.max(1, Math.floor((height + spacing) / (leastRow + spacing)))
        readonly property int rowHeight: Math.floor((height + spacing) / fitting) - spacing

        width: parent.width
        height: parent.height - (foot.visible ? foot.height + Theme.grid : 0)
        spacing: Theme.grid
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        snapMode: ListView.SnapToItem
        activeFocusOnTab: count > 0
        focus: true
        model: list.page.messages
        Accessible.role: Accessible.List
        Accessible.name: "Mensagens"

        delegate: Card {
            id: card

            required property int index
            required property string id
            required property string sender
            required property string subject
            required property string time
            required property string snippet
            required property bool isRead
            required property bool isSelected
            required property string spoken

            width: ListView.view.width
            height: rows.rowHeight
            name: spoken
            onActiveFocusChanged: if (activeFocus)
                ListView.view.currentIndex = index
            Keys.onReturnPressed: list.page.select(id)
            Keys.onDeletePressed: {
                list.page.select(id);
                list.page.trash();
            }
            Keys.onPressed: event => {
                event.accepted = event.key === Qt.Key_E && event.modifiers === Qt.NoModifier;
                if (event.accepted) {
                    list.page.select(id);
                    list.page.archive();
                }
            }

            Rectangle {
                anchors.fill: parent
                radius: Theme.cardRadius
                visible: card.isSelected
                color: Theme.surfaceSelected
            }
            Rectangle {
                id: mark
                x: Theme.grid
                anchors.verticalCenter: parent.verticalCenter
                width: Theme.grid
                height: Theme.grid
                radius: Theme.grid / 2
                visible: !card.isRead
                color: Theme.accent
            }
            Column {
                x: Theme.cardPadding + Theme.grid
                width: parent.width - x - Theme.cardPadding
                anchors.verticalCenter: parent.verticalCenter

                Item {
                    width: parent.width
                    height: sender.height

                    Label {
                        id: sender
                        width: parent.width - time.width - Theme.grid
                        text: card.sender
                        font.weight: card.isRead ? Font.Normal : Font.DemiBold
                        Accessible.ignored: true
                    }
                    Label {
                        id: time
                        anchors.right: parent.right
                        anchors.baseline: sender.baseline
                        text: card.time
                        color: Theme.secondaryText
                        font.pixelSize: Theme.captionSize
                        Accessible.ignored: true
                    }
                }
                Label {
                    width: parent.width
                    text: card.subject
                    color: card.isRead ? Theme.secondaryText : Theme.text
                    font.pixelSize: Theme.smallSize
                    Accessible.ignored: true
                }
            }
            MouseArea {
                anchors.fill: parent
                onClicked: {
                    card.forceActiveFocus();
                    list.page.select(card.id);
                }
            }
        }
    }
    Label {
        anchors.fill: rows
        visible: !list.page.hasMessages
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.Wrap
        elide: Text.ElideNone
        text: list.page.state.length > 0 ? "As mensagens aparecem quando a conta estiver conectada." : "A caixa de entrada está vazia."
        color: Theme.tertiaryText
    }

    Item {
        id: foot
        anchors.bottom: parent.bottom
        width: parent.width
        height: Theme.controlHeight
        visible: list.page.undoTitle.length > 0 || list.page.state.length > 0

        Label {
            visible: list.page.undoTitle.length === 0
            width: parent.width
            height: parent.height
            verticalAlignment: Text.AlignVCenter
            text: list.page.state
            color: Theme.secondaryText
            font.pixelSize: Theme.captionSize
        }
        ActionButton {
            visible: list.page.undoTitle.length > 0
            name: list.page.undoTitle
            textColor: Theme.accent
            idleColor: "transparent"
            onTriggered: list.page.undo()
        }
    }
}
