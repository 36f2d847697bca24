import QtQuick
import Velmo

/// The machine at one look; a click shows more.
ControlSurface {
    id: summary

    required property HomePage home
    required property string title
    required property SystemPageModel card
    property bool watched: false
    readonly property var shown: ["battery", "network", "memory", "processor"]
    readonly property int lines: shown.length - (card.hasBattery ? 0 : 1)

    name: title
    radius: Theme.cardRadius
    idleColor: Theme.surface
    edgeColor: Theme.hairline
    onWatchedChanged: card.setWatched(watched)
    Component.onDestruction: if (card)
        card.setWatched(false)
    onTriggered: home.page.openModule("system")

    SectionTitle {
        id: heading
        y: Theme.grid
        text: summary.title
    }

    Column {
        x: Theme.cardPadding
        y: heading.height + Theme.grid
        width: parent.width - 2 * x
        height: parent.height - y - 2 * Theme.grid

        Repeater {
            model: summary.card.tiles

            delegate: Item {
                id: line

                required property string id
                required property string symbol
                required property string title
                required property string value
                required property bool isWarning

                visible: summary.shown.includes(id)
                width: parent.width
                height: Math.floor(parent.height / summary.lines)

                Symbol {
                    height: parent.height
                    name: line.symbol
                    size: Theme.smallSymbolSize
                    color: line.isWarning ? Theme.warning : Theme.secondaryText
                }
                Label {
                    x: Theme.smallSymbolSize + Theme.gap
                    width: parent.width - x - value.width - Theme.gap
                    height: parent.height
                    text: line.title
                    color: Theme.secondaryText
                    font.pixelSize: Theme.smallSize
                }
                Label {
                    id: value
                    anchors.right: parent.right
                    width: Math.min(implicitWidth, parent.width / 2)
                    height: parent.height
                    text: line.value
                    color: line.isWarning ? Theme.warning : Theme.text
                    font.pixelSize: Theme.smallSize
                    font.weight: Font.Medium
                    horizontalAlignment: Text.AlignRight
                }
            }
        }
    }
}
