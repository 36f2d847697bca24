import QtQuick
import Velmo.Design
import Velmo.Modules.Mail

/// The message that is read, as text, with what can be done with it.
FocusScope {
    id: sheet

    required property MailPageModel page

    CardSurface {
        anchors.fill: parent
    }
    Label {
        anchors.centerIn: parent
        visible: !sheet.page.hasSelection
        text: sheet.page.hasMessages ? "Escolha uma mensagem." : ""
        color: Theme.tertiaryText
    }

    Item {
        anchors.fill: parent
        anchors.margins: Theme.cardPadding
        visible: sheet.page.hasSelection

        Label {
            id: subject
            width: parent.width
            text: sheet.page.subject
            textFormat: Text.PlainText
            font.weight: Font.DemiBold
        }
        Label {
            id: sender
            y: subject.height
            width: parent.width
            text: sheet.page.sender
            textFormat: Text.PlainText
            color: Theme.secondaryText
            font.pixelSize: Theme.captionSize
        }

        Flickable {
            id: flick
            y: sender.y + sender.height + Theme.grid
            width: parent.width
            height: tools.y - y - Theme.grid
            clip: true
            contentHeight: column.height
            boundsBehavior: Flickable.StopAtBounds
            activeFocusOnTab: true
            Accessible.role: Accessible.StaticText
            Accessible.name: sheet.page.text
            Keys.onDownPressed: contentY = Math.min(Math.max(0, contentHeight - height), contentY + Theme.rowHeight)
            Keys.onUpPressed: contentY = Math.max(0, contentY - Theme.rowHeight)

            FocusRing {
                parent: flick
                radius: Theme.controlRadius
                shown: flick.activeFocus
            }
            Column {
                id: column
                width: flick.width
                spacing: Theme.grid

                Label {
                    width: parent.width
                    text: sheet.page.text
                    textFormat: Text.PlainText
                    wrapMode: Text.Wrap
                    elide: Text.ElideNone
                    color: sheet.page.isLoading ? Theme.secondaryText : Theme.text
                    font.pixelSize: Theme.smallSize
                    Accessible.ignored: true
                }
                Repeater {
                    model: sheet.page.links

                    delegate: ActionButton {
                        required property string id
                        required property string title
                        required property string text
                        required property bool isFalse

                        name: isFalse ? "Cuidado: leva a " + title + ", e não a " + text : "Abrir " + title
                        label: isFalse ? "Leva a " + title + ", e não a " + text : title
                        textColor: isFalse ? Theme.error : Theme.accent
                        width: Math.min(implicitWidth, column.width)
                        onTriggered: sheet.page.openLink(id)
                    }
                }
            }
        }

        Row {
            id: tools
            anchors.bottom: parent.bottom
            spacing: Theme.grid

            ActionButton {
                visible: sheet.page.code.length > 0
                name: "Copiar código " + sheet.page.code
                label: sheet.page.code + " · Copiar"
                textColor: Theme.accent
                onTriggered: sheet.page.copyCode()
            }
            ActionButton {
                visible: sheet.page.signInHost.length > 0
                name: "Entrar em " + sheet.page.signInHost
                textColor: Theme.accent
                onTriggered: sheet.page.signIn()
            }
            IconButton {
                visible: sheet.page.isUnread
                name: "Marcar como lida"
                symbol: "checkmark"
                onTriggered: sheet.page.markRead()
            }
            IconButton {
                visible: sheet.page.canArchive
                name: "Arquivar"
                symbol: "archivebox"
                onTriggered: sheet.page.archive()
            }
            IconButton {
                name: "Mover para o lixo"
                symbol: "trash"
                onTriggered: sheet.page.trash()
            }
            IconButton {
                name: "Responder"
                symbol: "arrowshape.turn.up.left"
                onTriggered: sheet.page.reply()
            }
            IconButton {
                visible: sheet.page.canOpen
                name: "Abrir no e-mail"
                symbol: "arrow.up.forward.app"
                onTriggered: sheet.page.openOutside()
            }
        }
    }
}
