import QtQuick
import Velmo.Design
import Velmo.Modules.Frame
import Velmo.Modules.Clipboard

/// The applications from which nothing is taken, and a search for more. The arrow keys go from one
/// to the next, Delete takes one out.
SettingsSection {
    id: section

    required property ClipboardSettingsModel model

    title: "Aplicativos ignorados"

    SettingRow {
        title: "Adicionar aplicativo"
        detail: section.model.foundNote.length > 0 ? section.model.foundNote
                                                   : "O que você copiar nele não entra no histórico."

        TextEntry {
            id: query
            name: "Buscar aplicativo para ignorar"
            placeholder: "Buscar aplicativo"
            onEdited: text => section.model.search(text)
            onAccepted: {
                section.model.addFirst();
                query.text = "";
            }
        }
    }

    Repeater {
        model: section.model.found

        delegate: ControlSurface {
            id: match

            required property string id
            required property string title
            required property string icon
            required property string spoken

            name: spoken
            width: parent.width
            height: Theme.controlHeight + 2 * Theme.grid
            radius: Theme.cardRadius
            onTriggered: {
                const id = match.id;
                query.text = "";
                query.forceActiveFocus();
                section.model.add(id);
            }

            Image {
                id: picture
                x: Theme.cardPadding
                anchors.verticalCenter: parent.verticalCenter
                width: Theme.symbolSize
                height: width
                source: match.icon
                sourceSize.width: width
                sourceSize.height: height
            }
            Label {
                anchors.left: picture.right
                anchors.leftMargin: Theme.gap
                anchors.right: sign.left
                height: parent.height
                text: match.title
                Accessible.ignored: true
            }
            Symbol {
                id: sign
                anchors.right: parent.right
                anchors.rightMargin: Theme.cardPadding
                height: parent.height
                name: "plus"
                size: Theme.smallSymbolSize
                color: Theme.secondaryText
            }
        }
    }

    ListView {
        id: list
        width: parent.width
        implicitHeight: contentHeight
        model: section.model.ignored
        interactive: false
        keyNavigationEnabled: true
        highlightMoveDuration: 0
        Accessible.role: Accessible.List
        Accessible.name: "Aplicativos ignorados"

        delegate: Item {
            id: row

            required property int index
            required property string title
            required property string icon
            required property string detail
            required property string spoken

            width: ListView.view.width
            height: Theme.rowHeight
            activeFocusOnTab: activeFocus || ListView.isCurrentItem
            Accessible.role: Accessible.ListItem
            Accessible.name: spoken
            Accessible.description: "Delete tira da lista"
            Accessible.focusable: true
            Accessible.focused: activeFocus
            Keys.onDeletePressed: section.model.remove(index)
            onActiveFocusChanged: if (activeFocus)
                ListView.view.currentIndex = index

            Rectangle {
                anchors.fill: parent
                radius: Theme.cardRadius
                color: hover.hovered ? Theme.surfaceHover : "transparent"

                HoverHandler {
                    id: hover
                }
                FocusRing {
                    radius: parent.radius
                    shown: row.activeFocus
                }
            }

            Symbol {
                id: glyph
                x: Theme.cardPadding
                width: Theme.symbolSize
                height: parent.height
                visible: row.icon.length === 0
                name: "hand.raised"
                color: Theme.tertiaryText
            }
            Image {
                x: glyph.x
                anchors.verticalCenter: parent.verticalCenter
                width: Theme.symbolSize
                height: width
                source: row.icon
                sourceSize.width: width
                sourceSize.height: height
            }
            Column {
                anchors.left: glyph.right
                anchors.leftMargin: Theme.gap
                anchors.right: remove.left
                anchors.rightMargin: Theme.gap
                anchors.verticalCenter: parent.verticalCenter

                Label {
                    width: parent.width
                    text: row.title
                    Accessible.ignored: true
                }
                Label {
                    width: parent.width
                    visible: text.length > 0
                    text: row.detail
                    color: Theme.secondaryText
                    font.pixelSize: Theme.captionSize
                    Accessible.ignored: true
                }
            }
            IconButton {
                id: remove
                anchors.right: parent.right
                anchors.rightMargin: Theme.iconInset
                anchors.verticalCenter: parent.verticalCenter
                activeFocusOnTab: false
                name: "Remover " + row.title
                symbol: "xmark"
                onTriggered: section.model.remove(row.index)
            }
        }
    }

    SettingRow {
        visible: section.model.canRestore
        title: "Gerenciadores de senhas padrão"

        ActionButton {
            name: "Restaurar"
            onTriggered: section.model.restore()
        }
    }
}
