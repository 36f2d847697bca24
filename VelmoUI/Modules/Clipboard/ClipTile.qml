import QtQuick
import Velmo

/// A copy: a click puts it back on the clipboard, a drag takes it elsewhere.
Item {
    id: tile

    required property int index
    required property string kind
    required property string title
    required property string text
    required property string picture
    required property string swatch
    required property string origin
    required property bool isPinned
    required property bool isFavorite
    required property bool isCollected
    required property string spoken
    required property ClipboardPageModel page
    readonly property real radius: Theme.cardRadius
    readonly property bool isCurrent: GridView.isCurrentItem
    readonly property bool isFocused: isCurrent && GridView.view.activeFocus
    readonly property bool hovered: hover.hovered

    signal menuRequested(point at)

    function run(command: string) {
        page.setCurrent(index);
        page.run(command);
    }

    Accessible.role: Accessible.ListItem
    Accessible.name: spoken
    Accessible.selectable: true
    Accessible.selected: isCurrent
    Accessible.focusable: true
    Accessible.focused: isFocused
    Accessible.onPressAction: run("copy")

    Rectangle {
        anchors.fill: parent
        radius: tile.radius
        color: area.pressed ? Theme.surfacePressed : tile.hovered ? Theme.surfaceHover : Theme.surface
        border.width: tile.isFocused || (tile.isCurrent && tile.page.collections.isCollecting) ? Theme.ringWidth : 0
        border.color: Theme.accent

        Behavior on color {
            ColorAnimation {
                duration: Theme.hover
            }
        }
    }

    ClipPreview {
        x: Theme.cardPadding
        y: 2 * Theme.grid
        width: parent.width - 2 * x
        height: footer.y - y - Theme.grid
        kind: tile.kind
        title: tile.title
        text: tile.text
        picture: tile.picture
        swatch: tile.swatch
    }

    Label {
        id: footer
        x: Theme.cardPadding
        y: parent.height - height - 2 * Theme.grid
        width: marks.x - x - Theme.grid
        text: tile.origin
        color: Theme.tertiaryText
        font.pixelSize: Theme.captionSize
        Accessible.ignored: true
    }

    Loader {
        id: marks
        anchors.right: parent.right
        anchors.rightMargin: 2 * Theme.grid
        anchors.verticalCenter: footer.verticalCenter
        active: tile.isCollected || tile.isFavorite || tile.isPinned
        sourceComponent: Row {
            Repeater {
                model: [tile.isCollected ? "folder" : "", tile.isFavorite ? "star.fill" : "", tile.isPinned ? "pin.fill" : ""]

                delegate: Symbol {
                    required property string modelData

                    visible: name.length > 0
                    name: modelData
                    size: Theme.markSize
                    color: Theme.accent
                }
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
            tile.GridView.view.forceActiveFocus();
            tile.page.setCurrent(tile.index);
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
        onClicked: mouse => {
            if (!hasDragged && mouse.button === Qt.LeftButton)
                tile.page.copy();
        }
    }

    Loader {
        anchors.right: parent.right
        anchors.margins: Theme.grid
        y: Theme.grid
        active: tile.hovered && !area.pressed
        sourceComponent: Rectangle {
            width: buttons.width
            height: buttons.height
            radius: Theme.controlRadius
            color: Theme.raised

            Row {
                id: buttons

                IconButton {
                    activeFocusOnTab: false
                    name: tile.isPinned ? "Desafixar" : "Fixar"
                    symbol: "pin.fill"
                    symbolColor: tile.isPinned ? Theme.accent : hovered ? Theme.text : Theme.secondaryText
                    onTriggered: tile.run("pin")
                }
                IconButton {
                    activeFocusOnTab: false
                    name: tile.isFavorite ? "Tirar dos favoritos" : "Favoritar"
                    symbol: tile.isFavorite ? "star.fill" : "star"
                    symbolColor: tile.isFavorite ? Theme.accent : hovered ? Theme.text : Theme.secondaryText
                    onTriggered: tile.run("favorite")
                }
                IconButton {
                    activeFocusOnTab: false
                    name: "Remover"
                    symbol: "trash"
                    onTriggered: tile.run("remove")
                }
            }
        }
    }
}
