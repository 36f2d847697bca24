import QtQuick
import Velmo.Design
import Velmo.Modules.Home

/// The favourite applications, a click away.
CardSurface {
    id: favorites

    required property string title
    required property FavoritesModel card
    /// Home's, which gives it.
    property HomeMenu menu: null
    property Item pointed: null

    Accessible.role: Accessible.Grouping
    Accessible.name: title

    // Names the application that the pointer or the keyboard is on.
    SectionTitle {
        id: heading
        visible: undo.name.length === 0
        y: Theme.grid
        width: add.x
        text: (favorites.pointed ?? (grid.activeFocus ? grid.currentItem : null))?.name ?? favorites.title
    }
    ActionButton {
        id: undo
        x: Theme.grid
        y: Theme.grid
        visible: favorites.card.removedName.length > 0
        name: visible ? "Desfazer" : ""
        idleColor: "transparent"
        textColor: Theme.accent
        onTriggered: favorites.card.undoRemove()
    }
    IconButton {
        id: add
        anchors.right: parent.right
        anchors.rightMargin: Theme.iconInset
        y: Theme.grid
        visible: !favorites.card.isEmpty
        name: "Adicionar favorito"
        symbol: "plus"
        onTriggered: favorites.card.startPicking()
    }

    GridView {
        id: grid

        readonly property int largest: Theme.tileSymbolSize + 4 * Theme.grid
        readonly property real room: parent.width - 4 * Theme.grid
        readonly property int columns: favorites.card.columns(count, room, height, largest)

        anchors.horizontalCenter: parent.horizontalCenter
        y: heading.height + Theme.grid
        width: columns * cellWidth
        height: parent.height - y - 2 * Theme.grid
        cellWidth: Math.floor(Math.min(room / columns, largest + 4 * Theme.grid))
        cellHeight: Math.floor(height / Math.max(1, Math.ceil(count / columns)))
        interactive: false
        keyNavigationEnabled: true
        activeFocusOnTab: count > 0
        model: favorites.card.favorites
        Accessible.role: Accessible.List
        Accessible.name: favorites.title

        delegate: ControlSurface {
            id: icon

            required property int index
            required property string id
            required property string spoken
            required property var model

            function openMenu(at: point) {
                favorites.menu.openFor(icon, at, favorites.card.commands);
            }
            function run(command: string) {
                favorites.card.run(command, id);
            }

            name: model.name
            width: grid.cellWidth
            height: grid.cellHeight
            surfaceHeight: Math.min(width, height, grid.largest)
            activeFocusOnTab: false
            onActiveFocusChanged: if (activeFocus)
                grid.currentIndex = index
            onHoveredChanged: if (hovered)
                favorites.pointed = icon;
            else if (favorites.pointed === icon)
                favorites.pointed = null
            onTriggered: favorites.card.launch(icon.id)
            Keys.onDeletePressed: favorites.card.remove(icon.id)
            Keys.onPressed: event => {
                const asks = favorites.menu.isCalledBy(event);
                const moves = event.modifiers === (Qt.ControlModifier | Qt.ShiftModifier);
                const by = event.key === Qt.Key_Left ? -1 : event.key === Qt.Key_Right ? 1 : 0;
                event.accepted = asks || (moves && by !== 0);
                if (asks)
                    openMenu(Qt.point(width / 2, height / 2));
                else if (event.accepted)
                    favorites.card.move(icon.id, by);
            }

            MouseArea {
                anchors.fill: parent
                acceptedButtons: Qt.RightButton
                onPressed: mouse => icon.openMenu(Qt.point(mouse.x, mouse.y))
            }
            Image {
                anchors.centerIn: parent
                width: icon.surfaceHeight - 2 * Theme.grid
                height: width
                sourceSize.width: width
                sourceSize.height: height
                source: icon.model.icon
            }
        }
    }

    Column {
        anchors.centerIn: parent
        width: parent.width - 2 * Theme.cardPadding
        visible: favorites.card.isEmpty && favorites.card.removedName.length === 0
        spacing: 2 * Theme.grid

        Label {
            width: parent.width
            // Narrow enough that the last word doesn't stand alone.
            leftPadding: 2 * Theme.gap
            rightPadding: 2 * Theme.gap
            text: "Seus apps, a um clique"
            color: Theme.secondaryText
            font.pixelSize: Theme.smallSize
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
        }
        ActionButton {
            anchors.horizontalCenter: parent.horizontalCenter
            name: "Adicionar"
            onTriggered: favorites.card.startPicking()
        }
    }
}
