import QtQuick
import Velmo.Design
import Velmo.Notch

/// What is going on: left and right of the cut-out, or together in the middle where there is none.
Item {
    id: live

    required property NotchContent content
    readonly property real ear: (width - content.notchWidth) / 2

    Accessible.role: Accessible.StaticText
    Accessible.name: content.live.spoken

    Symbol {
        visible: live.content.hasCutout
        width: live.ear
        height: parent.height
        name: live.content.live.symbol
        size: Theme.smallSymbolSize
    }
    LiveSign {
        anchors.right: parent.right
        visible: live.content.hasCutout
        width: live.ear
        height: parent.height
        content: live.content
    }

    Row {
        id: row
        anchors.horizontalCenter: parent.horizontalCenter
        height: parent.height
        visible: !live.content.hasCutout
        spacing: 2 * Theme.grid

        Symbol {
            id: symbol
            height: parent.height
            name: live.content.live.symbol
            size: Theme.smallSymbolSize
        }
        Label {
            readonly property real room: live.width - 2 * Theme.cardPadding - symbol.width - sign.width - 2 * row.spacing

            height: parent.height
            width: Math.min(implicitWidth, room)
            text: live.content.live.title
            font.pixelSize: Theme.smallSize
            Accessible.ignored: true
        }
        LiveSign {
            id: sign
            height: parent.height
            content: live.content
        }
    }
}
