import QtQuick
import Velmo.Design
import Velmo.Notch

/// Where to drop: three parts side by side.
Item {
    id: surface

    required property NotchContent content

    Row {
        id: zones
        x: Theme.margin
        y: surface.content.hasCutout ? surface.content.notchHeight + Theme.grid : Theme.margin
        width: parent.width - 2 * x
        height: parent.height - y - Theme.margin
        spacing: Theme.gap

        Repeater {
            id: repeater
            model: surface.content.drop.zones

            delegate: CardSurface {
                id: zone

                required property string symbol
                required property string title
                required property string detail
                required property bool isTargeted

                width: (zones.width - (repeater.count - 1) * zones.spacing) / Math.max(1, repeater.count)
                height: zones.height
                color: isTargeted ? Theme.surfaceSelected : Theme.surface
                Accessible.role: Accessible.Grouping
                Accessible.name: title

                Behavior on color {
                    ColorAnimation {
                        duration: Theme.hover
                    }
                }

                FocusRing {
                    radius: zone.radius
                    shown: zone.isTargeted
                    always: true
                }

                Column {
                    anchors.centerIn: parent
                    spacing: Theme.grid

                    Symbol {
                        anchors.horizontalCenter: parent.horizontalCenter
                        name: zone.symbol
                        size: Theme.bigNumberSize
                        color: zone.isTargeted ? Theme.accent : Theme.secondaryText
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
