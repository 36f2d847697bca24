import QtQuick
import Velmo.Design
import Velmo.Modules.Clipboard

/// The whole history, favourites and collections, one below the other. Tiles can be dropped on them.
FocusScope {
    id: rail

    required property ClipboardPageModel page
    readonly property ClipCollections collections: page.collections

    /// The keyboard is to go back to the items.
    signal finished

    function enter() {
        list.currentIndex = 0;
        list.forceActiveFocus();
    }

    CardSurface {
        anchors.fill: parent
        border.color: rail.page.collections.isCollecting ? Theme.accent : Theme.hairline
    }

    ListView {
        id: list
        anchors.fill: parent
        anchors.margins: Theme.grid
        focus: true
        clip: true
        activeFocusOnTab: true
        boundsBehavior: Flickable.StopAtBounds
        highlightMoveDuration: Theme.glide
        model: rail.collections.rows
        Accessible.role: Accessible.List
        Accessible.name: rail.page.collections.isCollecting ? "Coleções do item" : "Coleções"
        Keys.onEscapePressed: event => {
            event.accepted = rail.collections.isCollecting;
            rail.collections.stopCollecting();
            if (event.accepted)
                rail.finished();
        }
        Keys.onRightPressed: rail.finished()

        delegate: ControlSurface {
            id: row

            required property int index
            required property string id
            required property string title
            required property string symbol
            required property bool isSelected
            required property bool isOwn
            required property bool isNamed

            width: ListView.view.width
            height: Theme.controlHeight
            radius: height / 2
            name: title
            activeFocusOnTab: false
            idleColor: drop.containsDrag ? Theme.surfacePressed
                     : isSelected && !rail.collections.isCollecting ? Theme.surfaceSelected : "transparent"
            Accessible.checkable: id !== "new"
            Accessible.checked: isSelected
            onActiveFocusChanged: if (activeFocus)
                list.currentIndex = index
            onTriggered: {
                forceActiveFocus();
                rail.collections.choose(id);
            }
            Keys.onPressed: event => {
                event.accepted = isOwn && (event.key === Qt.Key_F2 || event.key === Qt.Key_Delete);
                if (event.accepted && event.key === Qt.Key_F2)
                    rail.collections.startNaming(id);
                else if (event.accepted)
                    rail.page.askToDelete(id);
            }

            Symbol {
                x: 2 * Theme.grid
                height: parent.height
                visible: !row.isNamed
                name: rail.collections.isCollecting && row.isSelected ? "checkmark" : row.symbol
                size: Theme.smallSymbolSize
                color: rail.collections.isCollecting && row.isSelected ? Theme.accent : Theme.secondaryText
            }
            Label {
                x: Theme.smallSymbolSize + 4 * Theme.grid
                width: (buttons.active ? buttons.x : parent.width) - x
                height: parent.height
                visible: !row.isNamed
                text: row.title
                color: row.isSelected || row.hovered ? Theme.text : Theme.secondaryText
                font.pixelSize: Theme.smallSize
                Accessible.ignored: true
            }
            Loader {
                id: buttons
                anchors.right: parent.right
                active: row.isOwn && row.hovered && !row.isNamed && !rail.collections.isCollecting
                sourceComponent: Row {
                    IconButton {
                        activeFocusOnTab: false
                        name: "Renomear " + row.title
                        symbol: "pencil"
                        onTriggered: rail.collections.startNaming(row.id)
                    }
                    IconButton {
                        activeFocusOnTab: false
                        name: "Excluir " + row.title
                        symbol: "trash"
                        onTriggered: rail.page.askToDelete(row.id)
                    }
                }
            }
            Loader {
                anchors.fill: parent
                active: row.isNamed
                sourceComponent: TextEntry {
                    name: "Nome da coleção"
                    placeholder: "Nome"
                    text: row.isOwn ? row.title : ""
                    onAccepted: {
                        rail.collections.finishNaming(text);
                        list.forceActiveFocus();
                    }
                    onActiveFocusChanged: if (!activeFocus)
                        rail.collections.stopNaming()
                    Keys.onEscapePressed: list.forceActiveFocus()
                    Component.onCompleted: {
                        forceActiveFocus();
                        selectAll();
                    }
                }
            }
            DropArea {
                id: drop
                anchors.fill: parent
                enabled: row.isOwn || row.id === "favorites"
                keys: ["application/x-orvane-clip"]
                onDropped: event => {
                    rail.collections.add(row.id, event.getDataAsString("application/x-orvane-clip"));
                    event.accept(Qt.CopyAction);
                }
            }
        }
    }
}
