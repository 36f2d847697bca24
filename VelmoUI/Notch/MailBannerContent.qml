import QtQuick
import Velmo.Design
import Velmo.Notch

/// A message that has just come, below the notch: who writes what, and the code that it brings.
Item {
    id: layer

    required property NotchContent content
    readonly property MailBanner banner: content.mailBanner

    Accessible.role: Accessible.AlertMessage
    Accessible.name: banner.spoken

    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        cursorShape: Qt.PointingHandCursor
        onContainsMouseChanged: layer.banner.setHeld(containsMouse)
        onClicked: layer.banner.open()
    }

    Item {
        x: 2 * Theme.cardPadding
        y: layer.content.hasCutout ? layer.content.notchHeight + Theme.grid : Theme.margin
        width: parent.width - 2 * x
        height: parent.height - y - (layer.content.hasCutout ? 2 * Theme.grid : Theme.margin)

        Column {
            width: parent.width - actions.width - Theme.gap
            anchors.verticalCenter: parent.verticalCenter
            spacing: Theme.grid / 2

            Row {
                width: parent.width
                spacing: Theme.grid

                Label {
                    id: sender
                    width: Math.min(implicitWidth, parent.width - more.width - parent.spacing)
                    text: layer.banner.sender
                    textFormat: Text.PlainText
                    font.weight: Font.DemiBold
                    Accessible.ignored: true
                }
                Label {
                    id: more
                    anchors.baseline: sender.baseline
                    text: layer.banner.more
                    color: Theme.secondaryText
                    font.pixelSize: Theme.captionSize
                    Accessible.ignored: true
                }
            }
            Label {
                width: parent.width
                text: layer.banner.subject
                textFormat: Text.PlainText
                font.pixelSize: Theme.smallSize
                Accessible.ignored: true
            }
            NumberLabel {
                visible: layer.banner.code.length > 0
                text: layer.banner.code
                size: Theme.numberSize
            }
            Label {
                width: parent.width
                visible: layer.banner.code.length === 0 && text.length > 0
                text: layer.banner.snippet
                textFormat: Text.PlainText
                color: Theme.secondaryText
                font.pixelSize: Theme.captionSize
                wrapMode: Text.Wrap
                maximumLineCount: 2
                Accessible.ignored: true
            }
        }
        Row {
            id: actions
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            spacing: Theme.grid

            ActionButton {
                visible: layer.banner.code.length > 0
                name: "Copiar código " + layer.banner.code
                label: "Copiar"
                textColor: Theme.accent
                onTriggered: layer.banner.copyCode()
            }
            ActionButton {
                visible: layer.banner.code.length === 0 && layer.banner.host.length > 0
                name: "Entrar em " + layer.banner.host
                textColor: Theme.accent
                onTriggered: layer.banner.openLink()
            }
            IconButton {
                name: "Dispensar"
                symbol: "xmark"
                onTriggered: layer.banner.dismiss()
            }
        }
    }
}
