import QtQuick
import Velmo.Design
import Velmo.Modules.Frame
import Velmo.Modules.Mail

/// The codes and links of the last minutes, a press away; a click elsewhere shows the messages.
ModuleCard {
    id: offer

    required property SignInsModel card

    SectionTitle {
        id: heading
        y: Theme.grid
        text: offer.title
    }

    Column {
        id: rows

        readonly property int fitting: Math.floor(height / (2 * Theme.controlHeight))

        y: heading.y + heading.height
        width: parent.width
        height: parent.height - y - Theme.grid
        clip: true

        Repeater {
            model: offer.card.signIns

            delegate: Item {
                id: login

                required property int index
                required property string id
                required property string sender
                required property string code
                required property string host

                visible: index < rows.fitting
                width: rows.width
                height: 2 * Theme.controlHeight

                Column {
                    x: Theme.cardPadding
                    anchors.verticalCenter: parent.verticalCenter
                    width: use.x - x - Theme.grid

                    Label {
                        width: parent.width
                        text: login.sender
                        color: Theme.secondaryText
                        font.pixelSize: Theme.captionSize
                    }
                    Label {
                        width: parent.width
                        text: login.code.length > 0 ? login.code : login.host
                        font.pixelSize: login.code.length > 0 ? Theme.titleSize : Theme.smallSize
                        font.weight: Font.Medium
                    }
                }
                ActionButton {
                    id: use
                    anchors.right: dismiss.left
                    anchors.verticalCenter: parent.verticalCenter
                    name: login.code.length > 0 ? "Copiar código " + login.code : "Entrar em " + login.host
                    label: login.code.length > 0 ? "Copiar" : "Entrar"
                    textColor: Theme.accent
                    onTriggered: offer.card.use(login.id)
                }
                IconButton {
                    id: dismiss
                    anchors.right: parent.right
                    anchors.rightMargin: Theme.iconInset
                    anchors.verticalCenter: parent.verticalCenter
                    name: "Dispensar " + (login.code.length > 0 ? login.code : login.host)
                    symbol: "xmark"
                    onTriggered: offer.card.dismiss(login.id)
                }
            }
        }
    }
}
