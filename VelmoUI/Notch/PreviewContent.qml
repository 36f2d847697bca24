import QtQuick
import Velmo.Design
import Velmo.Notch

/// A peek: the time and the day, and beside them what is going on, by its name.
Item {
    id: preview

    required property NotchContent content

    Row {
        id: row
        anchors.horizontalCenter: parent.horizontalCenter
        y: preview.content.hasCutout ? preview.content.notchHeight - Theme.grid : 0
        height: parent.height - y
        spacing: 2 * Theme.cardPadding

        Column {
            id: today
            anchors.verticalCenter: parent.verticalCenter

            NumberLabel {
                text: preview.content.clock
                size: Theme.numberSize
            }
            Label {
                text: preview.content.day
                color: Theme.secondaryText
                font.pixelSize: Theme.smallSize
            }
        }

        Row {
            id: live

            readonly property real room: preview.width - 2 * Theme.cardPadding - today.width - row.spacing

            anchors.verticalCenter: parent.verticalCenter
            visible: preview.content.hasLive || preview.content.peekTitle.length > 0
            spacing: 2 * Theme.grid

            Item {
                id: sign
                anchors.verticalCenter: parent.verticalCenter
                width: Theme.controlHeight
                height: width

                ProgressRing {
                    anchors.fill: parent
                    visible: preview.content.hasLive && preview.content.live.progress >= 0
                    progress: preview.content.live.progress
                    color: Theme.accent
                    trackColor: Theme.surfaceSelected
                }
                Symbol {
                    anchors.centerIn: parent
                    name: preview.content.hasLive ? preview.content.live.symbol : preview.content.peekSymbol
                    size: Theme.smallSymbolSize
                }
            }
            Column {
                readonly property real room: live.room - sign.width - live.spacing

                anchors.verticalCenter: parent.verticalCenter
                width: Math.min(room, Math.max(title.implicitWidth, meaning.implicitWidth))

                Label {
                    id: title
                    width: parent.width
                    text: preview.content.hasLive ? preview.content.live.title : preview.content.peekTitle
                    font.weight: Font.Medium
                }
                Label {
                    id: meaning
                    width: parent.width
                    visible: text.length > 0
                    text: preview.content.hasLive ? preview.content.live.meaning : preview.content.peekDetail
                    color: Theme.secondaryText
                    font.pixelSize: Theme.smallSize
                }
            }
        }
    }
}
