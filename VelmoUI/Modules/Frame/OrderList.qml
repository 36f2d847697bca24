import QtQuick
import Velmo.Design
import Velmo.Modules.Frame

/// Rows in the user's order. They move by their handle, or by Ctrl or Alt with the arrow keys, which
/// alone go from row to row; Space hides or shows a row, Delete takes one out.
ListView {
    id: list

    /// Rows can be taken out instead of hidden.
    property bool isRemovable: false

    signal moved(int from, int to)
    signal toggled(int row)
    signal removed(int row)

    implicitHeight: contentHeight
    interactive: false
    keyNavigationEnabled: true
    highlightMoveDuration: 0
    Accessible.role: Accessible.List

    move: glide
    displaced: glide

    delegate: Item {
        id: row

        required property int index
        required property string title
        required property string symbol
        required property string icon
        required property bool isShown
        required property bool canToggle
        required property string spoken
        required property string action
        /// Where its top is dragged to, in the list.
        property real draggedTo: 0

        width: ListView.view.width
        height: Theme.rowHeight
        z: handle.pressed ? 1 : 0
        activeFocusOnTab: activeFocus || ListView.isCurrentItem
        Accessible.role: Accessible.ListItem
        Accessible.name: spoken
        Accessible.description: "Ctrl com as setas muda de lugar"
        Accessible.focusable: true
        Accessible.focused: activeFocus

        onActiveFocusChanged: if (activeFocus)
            ListView.view.currentIndex = index
        onDraggedToChanged: {
            const target = Math.min(Math.max(Math.round(draggedTo / height), 0), list.count - 1);
            if (target !== index)
                list.moved(index, target);
        }
        Keys.onPressed: event => {
            const moves = (event.modifiers & (Qt.ControlModifier | Qt.AltModifier)) !== 0;
            event.accepted = true;
            if (moves && event.key === Qt.Key_Up)
                list.moved(index, index - 1);
            else if (moves && event.key === Qt.Key_Down)
                list.moved(index, index + 1);
            else if (!list.isRemovable && event.key === Qt.Key_Space)
                list.toggled(index);
            else if (list.isRemovable && event.key === Qt.Key_Delete)
                list.removed(index);
            else
                event.accepted = false;
        }

        Rectangle {
            id: body
            width: parent.width
            height: parent.height
            y: handle.pressed ? row.draggedTo - row.y : 0
            radius: Theme.cardRadius
            color: handle.pressed ? Theme.raised : hover.hovered ? Theme.surfaceHover : "transparent"

            Behavior on y {
                enabled: !handle.pressed
                NumberAnimation {
                    duration: Theme.glide
                    easing.type: Easing.OutCubic
                }
            }

            HoverHandler {
                id: hover
            }
            FocusRing {
                radius: body.radius
                shown: row.activeFocus
            }

            MouseArea {
                id: handle

                property real grip: 0

                width: Theme.controlHeight + 2 * Theme.grid
                height: parent.height
                preventStealing: true
                cursorShape: pressed ? Qt.ClosedHandCursor : Qt.OpenHandCursor
                Accessible.ignored: true
                onPressed: mouse => {
                    grip = mouse.y;
                    row.draggedTo = row.y;
                    row.forceActiveFocus(Qt.MouseFocusReason);
                }
                onPositionChanged: mouse => {
                    const top = mapToItem(list.contentItem, 0, mouse.y).y - grip;
                    row.draggedTo = Math.min(Math.max(top, 0), list.contentHeight - height);
                }

                Symbol {
                    anchors.centerIn: parent
                    name: "line.3.horizontal"
                    size: Theme.smallSymbolSize
                    color: Theme.tertiaryText
                }
            }

            Symbol {
                id: glyph
                anchors.left: handle.right
                width: Theme.symbolSize
                height: parent.height
                visible: row.symbol.length > 0
                name: row.symbol
                color: row.isShown ? Theme.text : Theme.tertiaryText
            }
            Image {
                anchors.fill: glyph
                anchors.topMargin: (parent.height - Theme.symbolSize) / 2
                anchors.bottomMargin: anchors.topMargin
                visible: row.symbol.length === 0
                source: visible ? row.icon : ""
                sourceSize.width: Theme.symbolSize
                sourceSize.height: Theme.symbolSize
            }

            Label {
                anchors.left: glyph.right
                anchors.leftMargin: Theme.gap
                anchors.right: list.isRemovable ? remove.left : toggle.left
                anchors.rightMargin: Theme.gap
                height: parent.height
                text: row.title
                color: row.isShown ? Theme.text : Theme.tertiaryText
                Accessible.ignored: true
            }

            Toggle {
                id: toggle
                anchors.right: parent.right
                anchors.rightMargin: Theme.cardPadding
                anchors.verticalCenter: parent.verticalCenter
                visible: !list.isRemovable
                enabled: row.canToggle
                activeFocusOnTab: false
                name: row.action
                checked: row.isShown
                onToggled: () => list.toggled(row.index)
            }
            IconButton {
                id: remove
                anchors.right: parent.right
                anchors.rightMargin: Theme.iconInset
                anchors.verticalCenter: parent.verticalCenter
                visible: list.isRemovable
                activeFocusOnTab: false
                name: row.action
                symbol: "xmark"
                onTriggered: list.removed(row.index)
            }
        }
    }

    Transition {
        id: glide
        NumberAnimation {
            property: "y"
            duration: Theme.glide
            easing.type: Easing.OutCubic
        }
    }
}
