import QtQuick
import Velmo

/// The modules' symbols, six left and six right of the notch.
Item {
    id: bar

    required property NotchContent content
    readonly property real side: (width - content.notchWidth) / 2
    readonly property int half: 6

    Accessible.role: Accessible.PageTabList
    Accessible.name: "Módulos"

    Repeater {
        model: bar.content.modules

        delegate: ControlSurface {
            id: tab

            required property int index
            required property string id
            required property string title
            required property string symbol
            required property bool isSelected
            readonly property bool isLeft: index < bar.half
            readonly property int place: isLeft ? index : index - bar.half

            name: title
            radius: height / 2
            idleColor: isSelected ? Theme.surfaceSelected : "transparent"
            x: (isLeft ? Theme.gap : bar.width - bar.side + Theme.gap) + place * 34
            y: Math.max(0, (bar.height - height) / 2)
            width: isSelected ? label.x + label.width + Theme.cardPadding : 34
            height: Math.min(bar.height, Theme.controlHeight)
            Accessible.role: Accessible.PageTab
            Accessible.selected: isSelected
            onTriggered: bar.content.selectModule(tab.id)

            Symbol {
                id: glyph
                x: 7
                height: parent.height
                name: tab.symbol
                opacity: tab.isSelected || tab.hovered || tab.activeFocus ? 1 : 0.6
            }

            Label {
                id: label
                anchors.left: glyph.right
                anchors.leftMargin: 6
                height: parent.height
                width: tab.isSelected ? implicitWidth : 0
                visible: tab.isSelected
                text: tab.title
                font.pixelSize: Theme.smallSize
                font.weight: Font.DemiBold
            }
        }
    }

    IconButton {
        anchors.right: parent.right
        anchors.rightMargin: Theme.gap
        y: Math.max(0, (bar.height - height) / 2)
        height: Math.min(bar.height, Theme.controlHeight)
        name: "Fechar"
        symbol: "xmark"
        onTriggered: bar.content.close()
    }
}
