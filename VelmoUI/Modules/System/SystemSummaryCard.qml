import QtQuick
import Velmo.Design
import Velmo.Modules.Frame
import Velmo.Modules.System

/// The machine at one look; a click shows more.
ModuleCard {
    id: summary

    required property SystemPageModel card
    readonly property list<string> shown: ["battery", "network", "memory", "processor"]
    readonly property int lines: shown.length - (card.hasBattery ? 0 : 1)

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
