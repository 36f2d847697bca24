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
    required property string age
    required property bool isPinned
    required property bool isFavorite
    required property bool isCollected
    required property string spoken
    required property ClipboardPageModel page
    /// Of the picture that is dragged.
    readonly property real radius: Theme.cardRadius
    readonly property bool isCurrent: GridView.isCurrentItem
    readonly property bool isFocused: isCurrent && GridView.view.activeFocus
    readonly property bool isRinged: (isFocused && FocusCue.byKeys) || (isCurrent && page.collections.isCollecting)
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

    CardSurface {
        anchors.fill: parent
        color: area.pressed ? Theme.surfacePressed : tile.hovered ? Theme.surfaceHover : Theme.surface
        border.width: tile.isRinged ? Theme.ringWidth : 1
        border.color: tile.isRinged ? Theme.accent : Theme.hairline

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

    // A long name gives way; the age stays.
    Item {
        id: footer
        x: Theme.cardPadding
        y: parent.height - height - Theme.grid
        width: (buttons.active ? buttons.x : marks.x) - x - Theme.grid
        height: Theme.controlHeight

        Label {
            id: source
            width: Math.min(implicitWidth, footer.width - time.implicitWidth - Theme.grid)
            height: parent.height
            text: tile.origin
            color: Theme.tertiaryText
            font.pixelSize: Theme.captionSize
            Accessible.ignored: true
        }
        Label {
            id: time
            x: source.implicitWidth > 0 ? source.width + Theme.grid : 0
            height: parent.height
            text: tile.age
            color: Theme.tertiaryText
            font.pixelSize: Theme.captionSize
            Accessible.ignored: true
        }
    }

    Loader {
        id: marks
        anchors.right: parent.right
        anchors.rightMargin: Theme.cardPadding
        anchors.verticalCenter: footer.verticalCenter
        active: tile.isCollected || tile.isFavorite || tile.isPinned
        visible: !buttons.active
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

    // In place of the marks, so that nothing of the content is under them.
    Loader {
        id: buttons
        anchors.right: parent.right
        anchors.rightMargin: Theme.iconInset
        y: footer.y
        active: tile.hovered && !area.pressed
        sourceComponent: Row {
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
