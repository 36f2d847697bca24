import QtQuick
import Velmo.Design
import Velmo.Modules.Tools

/// What an archive holds, with a search.
ToolForm {
    id: tool

    fields: [
        Label {
            anchors.right: query.left
            anchors.rightMargin: Theme.gap
            height: Theme.controlHeight
            text: tool.page.entriesDetail
            color: Theme.secondaryText
            font.pixelSize: Theme.smallSize
        },
        TextEntry {
            id: query
            anchors.right: parent.right
            focus: true
            name: "Buscar no arquivo compactado"
            placeholder: "Buscar"
            onEdited: text => tool.page.searchEntries(text)
            Component.onCompleted: {
                tool.page.searchEntries("");
                forceActiveFocus();
            }
        }
    ]

    CardGrid {
        id: grid
        width: parent.width + Theme.gap
        height: parent.height
        rows: Math.max(1, Math.floor(height / Theme.controlHeight))
        cellWidth: Math.floor(width / 2)
        model: tool.page.entries
        Accessible.role: Accessible.List
        Accessible.name: "Conteúdo"

        delegate: Item {
            id: row

            required property string path
            required property string size
            required property string symbol
            required property string spoken

            width: grid.cellWidth - Theme.gap
            height: grid.cellHeight
            Accessible.role: Accessible.ListItem
            Accessible.name: spoken

            FocusRing {
                radius: Theme.controlRadius
                shown: row.activeFocus
            }
            Symbol {
                id: glyph
                x: Theme.grid
                height: parent.height
                name: row.symbol
                size: Theme.smallSymbolSize
                color: Theme.secondaryText
            }
            Label {
                anchors.left: glyph.right
                anchors.leftMargin: 2 * Theme.grid
                anchors.right: bytes.left
                anchors.rightMargin: 2 * Theme.grid
                height: parent.height
                text: row.path
                elide: Text.ElideMiddle
                font.pixelSize: Theme.smallSize
                Accessible.ignored: true
            }
            Label {
                id: bytes
                anchors.right: parent.right
                anchors.rightMargin: Theme.grid
                height: parent.height
                text: row.size
                color: Theme.secondaryText
                font.pixelSize: Theme.captionSize
                Accessible.ignored: true
            }
        }
    }
}
