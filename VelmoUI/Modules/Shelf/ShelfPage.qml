import QtQuick
import Velmo.Design
import Velmo.Modules.Frame
import Velmo.Modules.Shelf

/// What the user keeps in the notch, in a row that scrolls sideways.
FocusScope {
    id: view

    required property ShelfPageModel page

    Loader {
        anchors.centerIn: parent
        active: !view.page.hasTiles
        sourceComponent: EmptyState {
            width: Math.min(view.width, Theme.paneWidth)
            symbol: "tray.full"
            title: view.page.emptyTitle
            detail: "Arraste arquivos, links ou textos até o notch e solte em “No notch”."

            ActionButton {
                name: "Ajustes da prateleira"
                onTriggered: view.page.openSettings()
            }
        }
    }

    Item {
        id: header
        visible: view.page.hasTiles
        width: parent.width
        height: Theme.controlHeight
        z: 1

        SearchField {
            id: search
            name: "Buscar na prateleira"
            results: tiles
            onEdited: text => view.page.search(text)
            onAccepted: tiles.forceActiveFocus()
        }

        Loader {
            anchors.left: search.right
            anchors.leftMargin: Theme.gap
            anchors.right: tail.left
            anchors.rightMargin: Theme.gap
            height: parent.height
            active: view.page.groups.length > 0
            visible: !view.page.isGrouping
            sourceComponent: Flickable {
                id: groups
                contentWidth: picker.width
                clip: contentWidth > width
                interactive: clip
                boundsBehavior: Flickable.StopAtBounds

                Picker {
                    id: picker
                    name: "Grupo"
                    options: view.page.groups
                    current: view.page.groupIndex
                    onPicked: index => view.page.groupIndex = index
                }
                SidewaysWheel {
                    flickable: groups
                }
            }
        }

        Loader {
            anchors.left: search.right
            anchors.leftMargin: Theme.gap
            active: view.page.isGrouping
            sourceComponent: TextEntry {
                name: "Grupo da seleção"
                placeholder: "Grupo"
                text: view.page.selectedGroup
                onAccepted: {
                    view.page.group(text);
                    tiles.forceActiveFocus();
                }
                onActiveFocusChanged: if (!activeFocus)
                    view.page.stopGrouping()
                Keys.onEscapePressed: tiles.forceActiveFocus()
                Component.onCompleted: {
                    forceActiveFocus();
                    selectAll();
                }
            }
        }

        Row {
            id: tail
            anchors.right: parent.right
            anchors.rightMargin: Theme.iconInset

            TileSummary {
                page: view.page
            }
            Repeater {
                model: view.page.commands

                delegate: IconButton {
                    id: command

                    required property string id
                    required property string title
                    required property string shortcut

                    name: title
                    z: tip.visible ? 1 : 0
                    onTriggered: view.page.run(command.id)

                    Tip {
                        id: tip
                        anchors.right: parent.right
                        y: parent.height + Theme.grid
                        shown: command.hovered
                        text: command.title
                        shortcut: command.shortcut
                    }
                }
            }
        }
    }

    TileGrid {
        id: tiles
        y: Theme.controlHeight + 2 * Theme.grid
        width: parent.width + Theme.gap
        height: parent.height - y
        cellWidth: Theme.leastTileWidth
        name: "Prateleira"
        page: view.page
        search: search

        delegate: ShelfTile {
            grid: tiles
            page: view.page
        }
    }
}
