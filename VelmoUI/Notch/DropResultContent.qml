import QtQuick
import Velmo

/// What was dropped, as tiles.
FocusScope {
    id: result

    required property NotchContent content

    focus: true

    SectionTitle {
        id: title
        x: Theme.gap
        y: result.content.notchHeight
        text: result.content.droppedTitle
    }

    IconButton {
        anchors.right: parent.right
        anchors.rightMargin: Theme.gap
        y: title.y
        name: "Fechar"
        symbol: "xmark"
        onTriggered: result.content.close()
    }

    CardList {
        x: Theme.gap
        y: title.y + title.height + Theme.grid
        width: parent.width - 2 * x
        height: parent.height - y - Theme.gap
        model: result.content.droppedItems
        Accessible.role: Accessible.List
        Accessible.name: title.text

        delegate: DropTile {
            height: ListView.view.height
            onRemoved: result.content.removeDropped(id)
        }
    }
}
