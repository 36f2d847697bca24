import QtQuick
import Velmo.Design
import Velmo.Notch

/// The modules of one side. The selected one shows its title where there is room.
Row {
    id: tabs

    required property NotchContent content
    required property QtObject modules
    /// What the row may take, in points.
    required property real room
    /// At which end of a tab its tip begins, so that it stays in the panel.
    property bool tipsToTheLeft: false
    /// Of the symbols alone.
    readonly property real tabsWidth: repeater.count * Theme.tabWidth
    readonly property real titleRoom: room - tabsWidth - Theme.gap

    Repeater {
        id: repeater
        model: tabs.modules

        delegate: ControlSurface {
            id: tab

            required property string id
            required property string title
            required property string symbol
            required property bool isSelected
            required property string shortcut
            property bool showsTitle

            name: title
            idleColor: isSelected ? Theme.surfaceSelected : "transparent"
            width: Theme.tabWidth + (showsTitle ? label.implicitWidth + Theme.gap : 0)
            height: tabs.height
            surfaceHeight: Math.min(Theme.controlHeight, height - Theme.ringWidth)
            radius: surfaceHeight / 2
            z: tip.visible ? 1 : 0
            Accessible.role: Accessible.PageTab
            Accessible.selected: isSelected
            onTriggered: tabs.content.pages.select(tab.id)

            // Titles move the symbols, so they wait for the pointer to leave.
            Binding {
                target: tab
                property: "showsTitle"
                value: tab.isSelected && label.implicitWidth <= tabs.titleRoom
                when: !tabs.content.isBarHeld
                restoreMode: Binding.RestoreNone
            }

            Symbol {
                width: Theme.tabWidth
                height: parent.height
                name: tab.symbol
                color: tab.isSelected || tab.hovered || tab.activeFocus ? Theme.text : Theme.tertiaryText
            }

            Label {
                id: label
                x: Theme.tabWidth
                height: parent.height
                visible: tab.showsTitle
                text: tab.title
                opacity: tab.isSelected ? 1 : 0 // its room may have to stay
                font.pixelSize: Theme.smallSize
                font.weight: Font.Medium
                Accessible.ignored: true
            }

            Tip {
                id: tip
                y: parent.height + Theme.grid
                x: tabs.tipsToTheLeft ? tab.width - width : 0
                shown: tab.hovered && !tab.showsTitle
                text: tab.title
                shortcut: tab.shortcut
            }
        }
    }
}
