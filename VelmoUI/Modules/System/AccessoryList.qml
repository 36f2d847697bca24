import QtQuick
import Velmo.Design
import Velmo.Modules.System

/// Connected devices in columns.
Grid {
    id: list

    property alias model: devices.model
    required property real columnWidth

    flow: Grid.TopToBottom
    columns: Math.max(1, Math.ceil(devices.count / rows))
    columnSpacing: 2 * Theme.cardPadding

    Repeater {
        id: devices

        delegate: Item {
            id: device

            required property string symbol
            required property string name
            required property string percent
            required property string spoken

            width: list.columnWidth
            height: Theme.controlHeight
            Accessible.role: Accessible.StaticText
            Accessible.name: spoken

            Symbol {
                id: glyph
                height: parent.height
                name: device.symbol
                size: Theme.smallSymbolSize
                color: Theme.secondaryText
            }

            Label {
                anchors.left: glyph.right
                anchors.leftMargin: 2 * Theme.grid
                anchors.right: charge.left
                anchors.rightMargin: 2 * Theme.grid
                height: parent.height
                text: device.name
                font.pixelSize: Theme.smallSize
                Accessible.ignored: true
            }

            NumberLabel {
                id: charge
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                text: device.percent
                size: Theme.smallSize
                color: Theme.secondaryText
                Accessible.ignored: true
            }
        }
    }
}
