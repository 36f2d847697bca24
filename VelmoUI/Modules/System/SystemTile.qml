import QtQuick
import Velmo.Design
import Velmo.Modules.System

/// One aspect of the machine: a number or a text, what it means, and how full that is.
Card {
    id: tile

    required property int index
    required property string id
    required property string symbol
    required property string title
    required property string value
    required property string detail
    required property real progress
    required property bool isWarning
    required property string action
    required property string spoken

    /// The devices, in the tile that lists them.
    property alias accessories: list.model
    property alias accessoryRows: list.rows
    /// Of the tile, or of one column of devices.
    required property real columnWidth
    readonly property bool isAccessories: id === "accessories"
    readonly property bool isMeasured: progress >= 0
    readonly property color meaning: isWarning ? Theme.warning : Theme.accent

    signal triggered

    name: spoken
    width: isAccessories ? list.columns * columnWidth : columnWidth
    onActiveFocusChanged: if (activeFocus)
        ListView.view.currentIndex = index

    Symbol {
        id: glyph
        x: Theme.cardPadding
        y: Theme.cardPadding
        name: tile.symbol
        color: tile.meaning
    }

    Label {
        anchors.left: glyph.right
        anchors.leftMargin: Theme.grid
        anchors.right: parent.right
        anchors.rightMargin: Theme.grid
        y: glyph.y
        height: glyph.height
        text: tile.title
        color: Theme.secondaryText
        font.pixelSize: Theme.captionSize
        Accessible.ignored: true
    }

    // The values of all tiles stand in line, over room for two lines of explanation.
    NumberLabel {
        x: Theme.cardPadding
        anchors.bottom: explanation.top
        visible: tile.isMeasured
        text: tile.value
        size: Theme.numberSize
        Accessible.ignored: true
    }

    Label {
        x: Theme.cardPadding
        anchors.bottom: button.visible ? button.top : explanation.top
        anchors.bottomMargin: button.visible ? 4 * Theme.grid : 0
        width: parent.width - 2 * x
        visible: !tile.isMeasured
        text: tile.value
        font.pixelSize: Theme.titleSize
        font.weight: Font.Medium
        wrapMode: Text.Wrap
        maximumLineCount: 2
        Accessible.ignored: true
    }

    Label {
        id: explanation
        x: Theme.cardPadding
        y: Math.min(bar.y - 10 * Theme.grid, parent.height - Theme.cardPadding - height)
        width: parent.width - x - 2 * Theme.grid
        text: tile.detail
        color: Theme.secondaryText
        font.pixelSize: Theme.smallSize
        wrapMode: Text.Wrap
        maximumLineCount: tile.isMeasured ? 2 : 4
        Accessible.ignored: true
    }

    ProgressBar {
        id: bar
        x: Theme.cardPadding
        y: parent.height - height - Theme.cardPadding
        width: parent.width - 2 * x
        visible: tile.isMeasured
        progress: tile.progress
        filling: tile.meaning
    }

    ActionButton {
        id: button
        x: Theme.cardPadding
        y: parent.height - height - Theme.cardPadding
        visible: tile.action.length > 0
        name: tile.action
        onTriggered: tile.triggered()
    }

    AccessoryList {
        id: list
        x: Theme.cardPadding
        y: glyph.y + glyph.height + Theme.grid
        visible: tile.isAccessories
        columnWidth: tile.columnWidth - 2 * Theme.cardPadding
    }
}
