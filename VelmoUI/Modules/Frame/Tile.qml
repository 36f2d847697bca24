import QtQuick
import Velmo.Design
import Velmo.Modules.Frame

/// A tile of a `TileGrid`: pressed to select, dragged out, with a menu.
Item {
    id: tile

    required property int index
    required property string spoken
    required property TileGrid grid
    property bool isSelected: false
    /// Of the picture that is dragged.
    readonly property real radius: Theme.cardRadius
    readonly property bool isFocused: GridView.isCurrentItem && grid.activeFocus
    property bool isRinged: isFocused && FocusCue.byKeys
    readonly property bool hovered: hover.hovered
    readonly property bool pressed: area.pressed
    property color color: hovered ? Theme.surfaceHover : Theme.surface

    /// Pressed and released without a drag.
    signal clicked(int modifiers)
    signal doubleClicked

    width: grid.cellWidth - Theme.gap
    height: grid.cellHeight
    Accessible.role: Accessible.ListItem
    Accessible.name: spoken
    Accessible.selectable: true
    Accessible.selected: isSelected
    Accessible.focusable: true
    Accessible.focused: isFocused

    CardSurface {
        anchors.fill: parent
        color: tile.color
        border.width: tile.isRinged ? Theme.ringWidth : 1
        border.color: tile.isRinged ? Theme.accent : Theme.hairline

        Behavior on color {
            ColorAnimation {
                duration: Theme.hover
            }
        }
    }

    HoverHandler {
        id: hover
    }

    MouseArea {
        id: area

        property point start
        property bool hasDragged: false

        anchors.fill: parent
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        preventStealing: true
        onPressed: mouse => {
            start = Qt.point(mouse.x, mouse.y);
            hasDragged = false;
            tile.grid.forceActiveFocus();
            tile.grid.page.press(tile.index, mouse.modifiers);
            if (mouse.button === Qt.RightButton)
                tile.grid.openMenu(tile, start);
        }
        onPositionChanged: mouse => {
            const way = Math.abs(mouse.x - start.x) + Math.abs(mouse.y - start.y);
            if (hasDragged || !(pressedButtons & Qt.LeftButton) || way < Application.styleHints.startDragDistance)
                return;
            hasDragged = true;
            tile.grid.page.drag(tile);
        }
        onClicked: mouse => {
            if (!hasDragged && mouse.button === Qt.LeftButton)
                tile.clicked(mouse.modifiers);
        }
        onDoubleClicked: mouse => {
            if (mouse.button === Qt.LeftButton)
                tile.doubleClicked();
        }
    }
}
