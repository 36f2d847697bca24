import QtQuick
import Velmo.Design
import Velmo.Modules.Frame

/// One of several choices, a row each.
ControlSurface {
    id: row

    required property string title
    required property string detail
    required property bool isCurrent

    signal chosen

    name: title
    width: parent ? parent.width : 0
    height: Math.max(Theme.rowHeight, texts.height + 2 * Theme.cardPadding)
    radius: Theme.cardRadius
    Accessible.role: Accessible.RadioButton
    Accessible.checkable: true
    Accessible.checked: isCurrent
    onTriggered: chosen()

    Column {
        id: texts
        x: Theme.cardPadding
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width - mark.width - 3 * Theme.cardPadding
        spacing: Theme.grid / 2

        Label {
            width: parent.width
            text: row.title
            Accessible.ignored: true
        }
        Label {
            width: parent.width
            visible: text.length > 0
            text: row.detail
            color: Theme.secondaryText
            font.pixelSize: Theme.smallSize
        }
    }

    Symbol {
        id: mark
        anchors.right: parent.right
        anchors.rightMargin: Theme.cardPadding
        height: parent.height
        visible: row.isCurrent
        name: "checkmark"
        color: Theme.accent
    }
}
