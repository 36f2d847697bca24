import QtQuick
import Velmo.Design
import Velmo.Modules.Tools

/// All tools; those that don't fit the files say why.
FocusScope {
    id: tiles

    required property ToolsPageModel page
    /// Where the keyboard is to start, and then where it is.
    property alias current: grid.currentIndex

    focus: true

    CardGrid {
        id: grid
        width: parent.width + Theme.gap
        height: parent.height + Theme.gap
        cellWidth: Math.floor(width / Math.max(1, Math.ceil(count / rows)))
        interactive: contentWidth > width
        keyNavigationEnabled: true
        focus: true
        model: tiles.page.tools
        Accessible.role: Accessible.List
        Accessible.name: "Ferramentas"

        delegate: ControlSurface {
            id: tile

            required property int index
            required property string id
            required property string symbol
            required property string title
            required property string detail
            required property bool isEnabled
            required property string spoken
            readonly property bool isUsable: isEnabled && !tiles.page.isRunning

            name: spoken
            width: grid.cellWidth - Theme.gap
            height: grid.cellHeight - Theme.gap
            radius: Theme.cardRadius
            idleColor: Theme.surface
            edgeColor: Theme.hairline
            hoverColor: isUsable ? Theme.surfaceHover : idleColor
            pressedColor: isUsable ? Theme.surfacePressed : idleColor
            activeFocusOnTab: false
            Accessible.description: isUsable ? "" : "Indisponível"
            onActiveFocusChanged: if (activeFocus)
                grid.currentIndex = index
            onTriggered: {
                grid.currentIndex = index;
                if (isUsable)
                    tiles.page.open(id);
            }

            Symbol {
                id: glyph
                x: Theme.cardPadding
                anchors.verticalCenter: parent.verticalCenter
                name: tile.symbol
                color: tile.isUsable ? Theme.accent : Theme.tertiaryText
            }
            Column {
                anchors.left: glyph.right
                anchors.leftMargin: Theme.gap
                anchors.right: parent.right
                anchors.rightMargin: Theme.cardPadding
                anchors.verticalCenter: parent.verticalCenter

                Label {
                    width: parent.width
                    text: tile.title
                    color: tile.isUsable ? Theme.text : Theme.tertiaryText
                    font.weight: Font.Medium
                    Accessible.ignored: true
                }
                Label {
                    width: parent.width
                    text: tile.detail
                    color: Theme.secondaryText
                    font.pixelSize: Theme.captionSize
                    Accessible.ignored: true
                }
            }
        }
    }
}
