import QtQuick
import Velmo

/// An item of the shelf: pressed to select, dragged out, double-clicked to open.
Item {
    id: tile

    required property int index
    required property string id
    required property string kind
    required property string name
    required property string text
    required property string picture
    required property bool isPinned
    required property bool isSelected
    required property string spoken
    required property ShelfPageModel page
    /// Of the picture that is dragged.
    readonly property real radius: Theme.cardRadius
    readonly property bool isFocused: GridView.isCurrentItem && GridView.view.activeFocus
    readonly property bool isRinged: isFocused && FocusCue.byKeys
    readonly property bool isRenaming: page.renaming === id

    signal menuRequested(point at)

    Accessible.role: Accessible.ListItem
    Accessible.name: spoken
    Accessible.selectable: true
    Accessible.selected: isSelected
    Accessible.focusable: true
    Accessible.focused: isFocused
    Accessible.onPressAction: page.press(index, 0)

    CardSurface {
        anchors.fill: parent
        color: tile.isSelected ? Theme.surfaceSelected : hover.hovered ? Theme.surfaceHover : Theme.surface
        border.width: tile.isRinged ? Theme.ringWidth : 1
        border.color: tile.isRinged ? Theme.accent : Theme.hairline

        Behavior on color {
            ColorAnimation {
                duration: Theme.hover
            }
        }
    }

    Loader {
        x: 2 * Theme.grid
        y: 2 * Theme.grid
        width: parent.width - 2 * x
        height: lines.y - y - Theme.grid
        sourceComponent: tile.kind === "file" ? picture : tile.kind === "link" ? link : words

        Component {
            id: picture

            Image {
                fillMode: Image.PreserveAspectFit
                sourceSize.width: Theme.thumbnailSize * Screen.devicePixelRatio
                sourceSize.height: Theme.thumbnailSize * Screen.devicePixelRatio
                source: tile.picture
                opacity: status === Image.Ready ? 1 : 0

                Behavior on opacity {
                    NumberAnimation {
                        duration: Theme.fadeIn
                    }
                }
            }
        }
        Component {
            id: link

            Symbol {
                name: "link"
                size: Theme.bigNumberSize
                color: Theme.secondaryText
            }
        }
        Component {
            id: words

            Label {
                text: tile.text
                color: Theme.secondaryText
                font.pixelSize: Theme.captionSize
                wrapMode: Text.Wrap
                verticalAlignment: Text.AlignTop
                Accessible.ignored: true
            }
        }
    }

    Loader {
        anchors.right: parent.right
        anchors.rightMargin: 2 * Theme.grid
        y: 2 * Theme.grid
        active: tile.isPinned
        sourceComponent: Symbol {
            name: "pin.fill"
            size: Theme.smallSymbolSize
            color: Theme.accent
        }
    }

    Column {
        id: lines
        x: 2 * Theme.grid
        y: parent.height - height - 2 * Theme.grid
        width: parent.width - 2 * x
        opacity: tile.isRenaming ? 0 : 1

        Label {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            elide: Text.ElideMiddle
            text: tile.name
            font.pixelSize: Theme.smallSize
            Accessible.ignored: true
        }
        Label {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: tile.page.detail(tile.index)
            color: Theme.secondaryText
            font.pixelSize: Theme.captionSize
            Accessible.ignored: true
        }
    }

    HoverHandler {
        id: hover
    }

    MouseArea {
        property point start
        property bool hasDragged: false

        anchors.fill: parent
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        preventStealing: true
        onPressed: mouse => {
            start = Qt.point(mouse.x, mouse.y);
            hasDragged = false;
            tile.GridView.view.forceActiveFocus();
            tile.page.press(tile.index, mouse.modifiers);
            if (mouse.button === Qt.RightButton)
                tile.menuRequested(start);
        }
        onPositionChanged: mouse => {
            const way = Math.abs(mouse.x - start.x) + Math.abs(mouse.y - start.y);
            if (hasDragged || !(pressedButtons & Qt.LeftButton) || way < Application.styleHints.startDragDistance)
                return;
            hasDragged = true;
            tile.page.drag(tile);
        }
        onReleased: mouse => {
            if (!hasDragged && mouse.button === Qt.LeftButton)
                tile.page.release(tile.index, mouse.modifiers);
        }
        onDoubleClicked: mouse => {
            if (mouse.button === Qt.LeftButton)
                tile.page.open();
        }
    }

    Loader {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.margins: Theme.grid
        active: tile.isRenaming
        sourceComponent: TextEntry {
            name: "Novo nome"
            text: tile.name
            onAccepted: {
                tile.page.rename(text);
                tile.GridView.view.forceActiveFocus();
            }
            onActiveFocusChanged: if (!activeFocus)
                tile.page.stopRenaming()
            Keys.onEscapePressed: tile.GridView.view.forceActiveFocus()
            Component.onCompleted: {
                forceActiveFocus();
                selectFirst(tile.page.renamingLength);
            }
        }
    }
}
