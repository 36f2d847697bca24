import QtQuick
import Velmo.Design
import Velmo.Modules.Frame
import Velmo.Modules.Shelf

/// An item of the shelf, double-clicked to open.
Tile {
    id: tile

    required property string id
    required property string symbol
    required property string title
    required property string text
    required property string picture
    required property bool isPinned
    required isSelected
    required property ShelfPageModel page
    readonly property bool isRenaming: page.renaming === id

    color: isSelected ? Theme.surfaceSelected : hovered ? Theme.surfaceHover : Theme.surface
    onClicked: modifiers => page.release(index, modifiers)
    onDoubleClicked: page.open()
    Accessible.onPressAction: page.press(index, 0)

    Loader {
        x: 2 * Theme.grid
        y: 2 * Theme.grid
        width: parent.width - 2 * x
        height: lines.y - y - Theme.grid
        sourceComponent: tile.picture.length > 0 ? picture : tile.text.length > 0 ? words : link

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
                name: tile.symbol
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
            text: tile.title
            font.pixelSize: Theme.smallSize
            Accessible.ignored: true
        }
        Label {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: tile.page.detail(tile.id)
            color: Theme.secondaryText
            font.pixelSize: Theme.captionSize
            Accessible.ignored: true
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
            text: tile.title
            onAccepted: {
                tile.page.rename(text);
                tile.grid.forceActiveFocus();
            }
            onActiveFocusChanged: if (!activeFocus)
                tile.page.stopRenaming()
            Keys.onEscapePressed: tile.grid.forceActiveFocus()
            Component.onCompleted: {
                forceActiveFocus();
                selectFirst(tile.page.renamingLength);
            }
        }
    }
}
