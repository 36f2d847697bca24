import QtQuick
import Velmo.Design
import Velmo.Modules.Clipboard
import Velmo.Modules.Frame

/// A copy: a click puts it back on the clipboard, a drag takes it elsewhere.
Tile {
    id: tile

    required property string title
    required property string text
    required property string picture
    required property string swatch
    required property bool isLink
    required property bool isImage
    required property string origin
    required property string age
    required property bool isPinned
    required property bool isFavorite
    required property bool isCollected
    required property ClipboardPageModel page

    function run(command: string) {
        page.press(index, 0);
        page.run(command);
    }

    isSelected: GridView.isCurrentItem
    isRinged: (isFocused && FocusCue.byKeys) || (isSelected && page.collections.isCollecting)
    color: pressed ? Theme.surfacePressed : hovered ? Theme.surfaceHover : Theme.surface
    onClicked: page.copy()
    Accessible.onPressAction: run("copy")

    ClipPreview {
        x: Theme.cardPadding
        y: 2 * Theme.grid
        width: parent.width - 2 * x
        height: footer.y - y - Theme.grid
        title: tile.title
        text: tile.text
        picture: tile.picture
        swatch: tile.swatch
        isLink: tile.isLink
        isImage: tile.isImage
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

    // In place of the marks, so that nothing of the content is under them.
    Loader {
        id: buttons
        anchors.right: parent.right
        anchors.rightMargin: Theme.iconInset
        y: footer.y
        active: tile.hovered && !tile.pressed
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
