import QtQuick
import QtQuick.Templates as T
import Velmo.Design

/// A line of text to write in, with a button that empties it.
FocusScope {
    id: entry

    /// What a screen reader says.
    required property string name
    property alias text: field.text
    property alias placeholder: placeholder.text
    /// What is written isn't shown.
    property bool isSecret: false
    /// Gets the keys first while nothing is written here, as the page does for its undo.
    property Item keysWhileEmpty: null

    signal edited(string text)
    signal accepted

    function selectAll() {
        field.selectAll();
    }

    function selectFirst(count: int) {
        field.select(0, count);
    }

    // Qt gives a password's field no name, so that what is around it has to have it.
    Accessible.role: isSecret ? Accessible.Grouping : Accessible.NoRole
    Accessible.name: isSecret ? name : ""
    implicitWidth: Theme.fieldWidth
    implicitHeight: Theme.controlHeight

    T.TextField {
        id: field
        anchors.fill: parent
        focus: true
        activeFocusOnTab: true
        leftPadding: 2 * Theme.grid
        rightPadding: clear.visible ? clear.width : leftPadding
        verticalAlignment: TextInput.AlignVCenter
        color: Theme.text
        selectionColor: Theme.accent
        selectedTextColor: Theme.shape
        selectByMouse: true
        echoMode: entry.isSecret ? TextInput.Password : TextInput.Normal
        font.family: Theme.face
        font.pixelSize: Theme.bodySize
        Keys.priority: Keys.BeforeItem
        Keys.forwardTo: entry.keysWhileEmpty !== null && text.length === 0 && preeditText.length === 0 ? [entry.keysWhileEmpty] : []
        Accessible.name: entry.name
        onTextEdited: entry.edited(text)
        onAccepted: entry.accepted()

        background: Rectangle {
            radius: Theme.controlRadius
            color: field.hovered ? Theme.raise(Theme.field, Theme.hoverShare) : Theme.field

            FocusRing {
                radius: parent.radius
                shown: field.activeFocus
            }
        }

        Label {
            id: placeholder
            x: field.leftPadding
            width: parent.width - x - field.rightPadding
            height: parent.height
            visible: field.text.length === 0 && field.preeditText.length === 0
            color: Theme.tertiaryText
            Accessible.ignored: true
        }
    }

    IconButton {
        id: clear
        anchors.right: parent.right
        visible: field.text.length > 0
        name: "Limpar"
        symbol: "xmark"
        onTriggered: {
            field.clear();
            field.forceActiveFocus();
            entry.edited("");
        }
    }
}
