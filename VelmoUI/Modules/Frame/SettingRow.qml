import QtQuick
import Velmo.Design
import Velmo.Modules.Frame

/// What a setting is called, what it means, and its control at the right.
Item {
    id: row

    required property string title
    property string detail: ""
    /// What is wrong with the setting.
    property string issue: ""
    default property alias content: controls.data

    width: parent ? parent.width : 0
    height: Math.max(Theme.rowHeight, texts.height + 2 * Theme.cardPadding)

    Column {
        id: texts
        x: Theme.cardPadding
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width - controls.width - 3 * Theme.cardPadding
        spacing: Theme.grid / 2

        Label {
            width: parent.width
            text: row.title
            wrapMode: Text.Wrap
        }
        Label {
            width: parent.width
            visible: text.length > 0
            text: row.detail
            color: Theme.secondaryText
            font.pixelSize: Theme.smallSize
            wrapMode: Text.Wrap
        }
        Label {
            width: parent.width
            visible: text.length > 0
            text: row.issue
            color: Theme.error
            font.pixelSize: Theme.smallSize
            wrapMode: Text.Wrap
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
        }
    }

    Row {
        id: controls
        anchors.right: parent.right
        anchors.rightMargin: Theme.cardPadding
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2 * Theme.grid
    }
}
