import QtQuick
import Velmo.Design
import Velmo.Modules.Frame
import Velmo.Modules.Notes

/// All notes, or those that the search and the chosen tag leave.
Item {
    id: list

    required property NotesPageModel page

    signal written
    signal menuRequested(item: Item, row: string, at: point)

    SearchField {
        id: search
        width: parent.width - create.width - Theme.grid
        name: "Buscar notas"
        placeholder: "Buscar notas"
        results: grid
        onEdited: text => list.page.search(text)
    }
    IconButton {
        id: create
        anchors.right: parent.right
        name: "Nova nota"
        symbol: "plus"
        onTriggered: {
            search.text = "";
            list.page.create();
            list.written();
        }
    }

    ListView {
        id: tags
        y: Theme.controlHeight + Theme.grid
        width: parent.width
        height: visible ? Theme.controlHeight : 0
        visible: list.page.hasTags
        orientation: ListView.Horizontal
        spacing: Theme.grid
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        activeFocusOnTab: true
        model: list.page.tags
        Accessible.role: Accessible.List
        Accessible.name: "Tags"

        SidewaysWheel {
            flickable: tags
        }
        EdgeFades {
            parent: tags
            flickable: tags
        }

        delegate: ActionButton {
            required property string id
            required property string title
            required property bool isSelected
            required property int index

            name: title
            activeFocusOnTab: false
            idleColor: isSelected ? Theme.surfaceSelected : Theme.field
            textColor: isSelected ? Theme.accent : Theme.secondaryText
            Accessible.checkable: true
            Accessible.checked: isSelected
            onActiveFocusChanged: if (activeFocus)
                tags.currentIndex = index
            onTriggered: list.page.toggleTag(id)
        }
    }

    CardGrid {
        id: grid
        spacing: Theme.grid
        y: tags.y + (tags.visible ? tags.height + Theme.grid : 0)
        width: parent.width + Theme.grid
        height: parent.height - y + Theme.grid
        cellWidth: Math.floor(width / 2)
        model: list.page.notes
        Accessible.role: Accessible.List
        Accessible.name: "Notas"

        delegate: Card {
            id: card

            required property int index
            required property string id
            required property string title
            required property string summary
            required property bool isPinned
            required property bool isSelected
            required property string spoken

            function open() {
                list.page.select(id);
                list.written();
            }

            width: grid.cellWidth - Theme.grid
            height: grid.cellHeight - Theme.grid
            name: spoken
            onActiveFocusChanged: if (activeFocus)
                GridView.view.currentIndex = index
            Keys.onReturnPressed: open()
            Keys.onDeletePressed: list.page.remove(id)
            Keys.onPressed: event => {
                const isMenu = event.key === Qt.Key_Menu || (event.key === Qt.Key_F10 && event.modifiers === Qt.ShiftModifier);
                const isPin = event.key === Qt.Key_P && event.modifiers === Qt.ControlModifier;
                event.accepted = isMenu || isPin;
                if (isMenu)
                    list.menuRequested(card, id, Qt.point(width / 2, height / 4));
                else if (isPin)
                    list.page.togglePin(id);
            }

            Rectangle {
                anchors.fill: parent
                radius: Theme.cardRadius
                visible: card.isSelected
                color: Theme.surfaceSelected
            }
            Column {
                x: Theme.cardPadding
                width: parent.width - 2 * x - (card.isPinned ? pin.width : 0)
                anchors.verticalCenter: parent.verticalCenter

                Label {
                    width: parent.width
                    text: card.title
                    font.weight: Font.Medium
                    Accessible.ignored: true
                }
                Label {
                    width: parent.width
                    text: card.summary
                    color: Theme.secondaryText
                    font.pixelSize: Theme.captionSize
                    Accessible.ignored: true
                }
            }
            Symbol {
                id: pin
                anchors.right: parent.right
                anchors.rightMargin: Theme.cardPadding
                anchors.verticalCenter: parent.verticalCenter
                visible: card.isPinned
                name: "pin.fill"
                size: Theme.smallSymbolSize
                color: Theme.accent
            }
            MouseArea {
                anchors.fill: parent
                acceptedButtons: Qt.LeftButton | Qt.RightButton
                onPressed: mouse => {
                    if (mouse.button === Qt.RightButton)
                        list.menuRequested(card, card.id, Qt.point(mouse.x, mouse.y));
                }
                onClicked: mouse => {
                    if (mouse.button === Qt.LeftButton)
                        card.open();
                }
            }
        }
    }

    Label {
        anchors.fill: grid
        visible: !list.page.hasFound && !DataState.isLoading
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        elide: Text.ElideNone
        text: list.page.hasNotes ? "Nenhuma nota encontrada." : "Suas notas e tarefas aparecem aqui."
        color: Theme.tertiaryText
    }
}
