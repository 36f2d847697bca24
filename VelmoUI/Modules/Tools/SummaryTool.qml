import QtQuick
import Velmo.Design
import Velmo.Modules.Tools

/// Each file with its kind and size.
ToolForm {
    id: tool

    CardGrid {
        id: grid
        width: parent.width + Theme.gap
        height: parent.height + Theme.gap
        cellWidth: Math.floor(width / 3)
        focus: true
        model: tool.page.files
        Accessible.role: Accessible.List
        Accessible.name: "Arquivos escolhidos"
        Component.onCompleted: forceActiveFocus()

        delegate: Card {
            id: card

            required property int index
            required property string id
            required property string symbol
            required property string detail
            required property string removal
            required property string spoken
            required property var model

            name: spoken
            width: grid.cellWidth - Theme.gap
            height: grid.cellHeight - Theme.gap
            onActiveFocusChanged: if (activeFocus)
                grid.currentIndex = index
            Keys.onDeletePressed: tool.page.remove(id)

            Symbol {
                id: glyph
                x: Theme.cardPadding
                height: parent.height
                name: card.symbol
                color: Theme.secondaryText
            }
            Column {
                anchors.left: glyph.right
                anchors.leftMargin: Theme.gap
                anchors.right: remove.left
                anchors.verticalCenter: parent.verticalCenter

                Label {
                    width: parent.width
                    text: card.model.name
                    elide: Text.ElideMiddle
                    font.weight: Font.Medium
                    Accessible.ignored: true
                }
                Label {
                    width: parent.width
                    text: card.detail
                    color: Theme.secondaryText
                    font.pixelSize: Theme.smallSize
                    Accessible.ignored: true
                }
            }
            IconButton {
                id: remove
                anchors.right: parent.right
                anchors.rightMargin: Theme.iconInset
                anchors.verticalCenter: parent.verticalCenter
                enabled: !tool.page.isRunning
                name: card.removal
                symbol: "xmark"
                onTriggered: tool.page.remove(card.id)
            }
        }
    }
}
