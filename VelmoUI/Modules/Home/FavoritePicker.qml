import QtQuick
import Velmo.Design
import Velmo.Modules.Home

/// Finds applications and makes them favourites.
FocusScope {
    id: picker

    required property FavoritesModel favorites

    signal done

    focus: true
    Keys.onEscapePressed: done()

    TextEntry {
        id: query
        width: Theme.sidebarWidth
        focus: true
        name: "Buscar aplicativo"
        placeholder: "Buscar aplicativo"
        onEdited: text => picker.favorites.search(text)
        onAccepted: picker.favorites.addFirst()
        Component.onCompleted: forceActiveFocus()
    }
    Label {
        anchors.left: query.right
        anchors.leftMargin: Theme.gap
        height: query.height
        text: picker.favorites.count
        color: Theme.secondaryText
        font.pixelSize: Theme.smallSize
    }
    ActionButton {
        anchors.right: parent.right
        name: "Concluir"
        onTriggered: picker.done()
    }

    CardList {
        id: list
        y: query.height + Theme.gap
        width: parent.width
        height: parent.height - y
        model: picker.favorites.found
        Accessible.role: Accessible.List
        Accessible.name: "Aplicativos"

        delegate: ControlSurface {
            id: tile

            required property int index
            required property string id
            required property string spoken
            required property bool isFavorite
            required property var model

            name: spoken
            width: 2 * Theme.rowHeight + Theme.gap
            height: list.height
            radius: Theme.cardRadius
            idleColor: isFavorite ? Theme.surfaceSelected : Theme.surface
            edgeColor: Theme.hairline
            activeFocusOnTab: false
            Accessible.checkable: true
            Accessible.checked: isFavorite
            onActiveFocusChanged: if (activeFocus)
                list.currentIndex = index
            onTriggered: picker.favorites.toggle(tile.id)

            Image {
                id: icon
                anchors.horizontalCenter: parent.horizontalCenter
                y: (parent.height - height - name.height - Theme.grid) / 2
                width: Theme.tileSymbolSize
                height: Theme.tileSymbolSize
                sourceSize.width: width
                sourceSize.height: height
                source: tile.model.icon
            }
            Label {
                id: name
                x: Theme.grid
                width: parent.width - 2 * x
                anchors.top: icon.bottom
                anchors.topMargin: Theme.grid
                text: tile.model.name
                font.pixelSize: Theme.captionSize
                horizontalAlignment: Text.AlignHCenter
                Accessible.ignored: true
            }
            Symbol {
                anchors.right: parent.right
                anchors.rightMargin: 2 * Theme.grid
                y: 2 * Theme.grid
                visible: tile.isFavorite
                name: "checkmark.circle.fill"
                size: Theme.smallSymbolSize
                color: Theme.accent
            }
        }
    }

    Label {
        anchors.centerIn: list
        visible: !picker.favorites.hasFound
        text: "Nenhum aplicativo encontrado"
        color: Theme.secondaryText
    }
}
