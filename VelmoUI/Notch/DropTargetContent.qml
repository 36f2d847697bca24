import QtQuick
import Velmo

/// Where to drop: three parts side by side.
Item {
    id: surface

    required property NotchContent content
    readonly property int count: 3

    Row {
        x: Theme.gap
        y: surface.content.notchHeight + Theme.grid
        width: surface.width - 2 * x
        height: surface.height - y - Theme.gap
        spacing: Theme.gap

        Repeater {
            model: surface.content.dropZones

            delegate: Rectangle {
                id: zone

                required property string symbol
                required property string title
                required property string detail
                required property bool isTargeted

                width: (parent.width - (surface.count - 1) * Theme.gap) / surface.count
                height: parent.height
                radius: Theme.cardRadius + 4
                color: isTargeted ? Theme.surfaceSelected : Theme.surface
                border.width: isTargeted ? 1.5 : 1
                border.color: isTargeted ? Theme.accents[surface.content.accent] : Theme.hairline
                Accessible.role: Accessible.Grouping
                Accessible.name: title

                Behavior on color {
                    ColorAnimation {
                        duration: Theme.hover
                    }
                }

                Column {
                    anchors.centerIn: parent
                    spacing: Theme.grid

                    Symbol {
                        anchors.horizontalCenter: parent.horizontalCenter
                        name: zone.symbol
                        size: Theme.bigNumberSize
                        color: zone.isTargeted ? Theme.accents[surface.content.accent] : Theme.secondaryText
                    }
                    Label {
                        anchors.horizontalCenter: parent.horizontalCenter
                        text: zone.title
                        font.pixelSize: Theme.titleSize
                        font.weight: Font.Medium
                    }
                    Label {
                        anchors.horizontalCenter: parent.horizontalCenter
                        text: zone.detail
                        font.pixelSize: Theme.smallSize
                        color: Theme.secondaryText
                    }
                }
            }
        }
    }
}
