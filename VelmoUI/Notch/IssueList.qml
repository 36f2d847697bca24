import QtQuick
import Velmo.Design
import Velmo.Notch

/// What went wrong with the user's data, over the page.
FocusScope {
    id: list

    required property var issues

    signal dismissed
    signal closed

    Accessible.role: Accessible.AlertMessage
    Accessible.name: title.text
    Keys.onEscapePressed: closed()

    Rectangle {
        anchors.fill: parent
        radius: Theme.cardRadius
        color: Theme.raised
        border.width: 1
        border.color: Theme.raisedEdge
    }

    SectionTitle {
        id: title
        x: Theme.grid
        y: Theme.grid
        text: "Avisos"
    }
    ActionButton {
        id: dismiss
        anchors.right: parent.right
        anchors.margins: Theme.grid
        y: Theme.grid
        focus: true
        name: "Dispensar"
        onTriggered: list.dismissed()
    }

    ListView {
        x: Theme.grid + Theme.cardPadding
        y: dismiss.y + dismiss.height + Theme.grid
        width: parent.width - 2 * x
        height: parent.height - y - Theme.grid
        clip: true
        spacing: 2 * Theme.grid
        boundsBehavior: Flickable.StopAtBounds
        model: list.issues

        delegate: Label {
            required property string modelData

            width: ListView.view.width
            text: modelData
            wrapMode: Text.Wrap
            elide: Text.ElideNone
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
}
