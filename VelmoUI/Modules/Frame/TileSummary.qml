import QtQuick
import Velmo.Design
import Velmo.Modules.Frame

/// What there is on a page of tiles or what has just happened, and the way back.
Row {
    id: summary

    required property TilePage page
    property color color: Theme.secondaryText

    Label {
        height: Theme.controlHeight
        rightPadding: Theme.gap
        text: summary.page.summary
        color: summary.color
        font.pixelSize: Theme.smallSize
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    ActionButton {
        visible: summary.page.canUndo
        name: "Desfazer"
        textColor: Theme.accent
        onTriggered: summary.page.undoRemove()
    }
}
