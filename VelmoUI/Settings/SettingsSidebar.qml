import QtQuick
import Velmo.Design
import Velmo.Settings

/// The panes. The arrow keys go from one to the next.
ListView {
    id: sidebar

    signal selected(string id)

    topMargin: 2 * Theme.gap
    leftMargin: Theme.gap
    rightMargin: Theme.gap
    spacing: Theme.grid
    boundsBehavior: Flickable.StopAtBounds
    keyNavigationEnabled: true
    activeFocusOnTab: true
    highlightMoveDuration: 0
    Accessible.role: Accessible.PageTabList
    Accessible.name: "Páginas dos ajustes"

    delegate: ControlSurface {
        id: tab

        required property int index
        required property string id
        required property string title
        required property string symbol
        required property bool isSelected

        name: title
        width: sidebar.width - sidebar.leftMargin - sidebar.rightMargin
        height: Theme.controlHeight + Theme.grid
        activeFocusOnTab: false
        idleColor: isSelected ? Theme.surfaceSelected : "transparent"
        Accessible.role: Accessible.PageTab
        Accessible.selected: isSelected
        onActiveFocusChanged: if (activeFocus)
            sidebar.selected(id)
        onTriggered: {
            forceActiveFocus();
            sidebar.selected(id);
        }

        Symbol {
            id: glyph
            x: Theme.gap
            height: parent.height
            name: tab.symbol
            size: Theme.smallSymbolSize
            color: tab.isSelected ? Theme.text : Theme.secondaryText
        }
        Label {
            anchors.left: glyph.right
            anchors.leftMargin: Theme.gap
            height: parent.height
            text: tab.title
            font.weight: tab.isSelected ? Font.Medium : Font.Normal
            Accessible.ignored: true
        }
    }
}
