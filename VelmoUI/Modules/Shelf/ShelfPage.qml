import QtQuick
import Velmo

/// What the user keeps in the notch, in a row that scrolls sideways.
FocusScope {
    id: view

    property ShelfPageModel page: null
    property bool watched: false
    readonly property bool hasItems: page !== null && (!page.isEmpty || page.canUndo)

    onWatchedChanged: tell()
    onPageChanged: tell()
    Component.onDestruction: if (page !== null)
        page.setWatched(false)

    function tell() {
        if (page !== null)
            page.setWatched(watched);
    }

    function openMenu(item: Item, at: point) {
        if (page.hasSelection)
            menu.open(item.mapToItem(view, at));
    }

    Loader {
        anchors.centerIn: parent
        active: view.page !== null && !view.hasItems
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
        visible: view.hasItems
        width: parent.width
        height: Theme.controlHeight
        z: 1

        TextEntry {
            id: search
            name: "Buscar na prateleira"
            placeholder: "Buscar"
            onEdited: text => view.page.search(text)
            onAccepted: grid.forceActiveFocus()
            Keys.onDownPressed: grid.forceActiveFocus()
            Keys.onEscapePressed: event => {
                event.accepted = text.length > 0;
                if (event.accepted) {
                    text = "";
                    view.page.search("");
                    grid.forceActiveFocus();
                }
            }
        }

        Loader {
            anchors.left: search.right
            anchors.leftMargin: Theme.gap
            anchors.right: tail.left
            anchors.rightMargin: Theme.gap
            height: parent.height
            active: view.page !== null && view.page.groups.length > 0
            visible: !view.page?.isGrouping
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
            active: view.page?.isGrouping ?? false
            sourceComponent: TextEntry {
                name: "Grupo da seleção"
                placeholder: "Grupo"
                text: view.page.selectedGroup
                onAccepted: {
                    view.page.group(text);
                    grid.forceActiveFocus();
                }
                onActiveFocusChanged: if (!activeFocus)
                    view.page.stopGrouping()
                Keys.onEscapePressed: grid.forceActiveFocus()
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

            Label {
                height: Theme.controlHeight
                rightPadding: Theme.gap
                text: view.page?.summary ?? ""
                color: Theme.secondaryText
                font.pixelSize: Theme.smallSize
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            ActionButton {
                visible: view.page?.canUndo ?? false
                name: "Desfazer"
                textColor: Theme.accent
                onTriggered: view.page.undoRemove()
            }
            Repeater {
                model: view.page ? view.page.commands : null

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

    Label {
        anchors.centerIn: parent
        visible: view.hasItems && !view.page.isEmpty && !view.page.hasFound
        text: "Nada encontrado"
        color: Theme.secondaryText
    }

    CardGrid {
        id: grid
        y: Theme.controlHeight + 2 * Theme.grid
        width: parent.width + Theme.gap
        height: parent.height - y
        rows: 1
        cellWidth: Theme.leastTileWidth
        interactive: false
        keyNavigationEnabled: false
        focus: view.hasItems
        cacheBuffer: 0
        model: view.page ? view.page.items : null
        currentIndex: view.page?.currentIndex ?? -1
        Accessible.role: Accessible.List
        Accessible.name: "Prateleira"
        Keys.onPressed: event => {
            event.accepted = view.page.handleKey(event.key, event.modifiers);
            if (event.accepted)
                return;
            const isMenu = event.key === Qt.Key_Menu || (event.key === Qt.Key_F10 && event.modifiers === Qt.ShiftModifier);
            if (isMenu && currentItem) {
                view.openMenu(currentItem, Qt.point(currentItem.width / 2, currentItem.height / 4));
                event.accepted = true;
            } else if (view.hasItems && event.text > " " && event.key !== Qt.Key_Delete && !(event.modifiers & (Qt.ControlModifier | Qt.AltModifier | Qt.MetaModifier))) {
                search.text += event.text;
                view.page.search(search.text);
                search.forceActiveFocus();
                event.accepted = true;
            }
        }

        delegate: ShelfTile {
            width: grid.cellWidth - Theme.gap
            height: grid.cellHeight
            page: view.page
            onMenuRequested: at => view.openMenu(this, at)
        }
    }

    ContextMenu {
        id: menu
        model: view.page ? view.page.commands : null
        onChosen: id => view.page.run(id)
        onVisibleChanged: if (!visible)
            grid.forceActiveFocus()
    }
}
