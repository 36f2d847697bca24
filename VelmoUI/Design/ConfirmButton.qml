import QtQuick
import Velmo.Design

/// A button for what can't be undone: it asks in place first, to the left of where it was pressed. It
/// has to stand at the right, so that a second press there never confirms.
Row {
    id: button

    required property string name
    required property string question
    required property string confirmName
    /// Without a surface of its own.
    property bool isQuiet: false
    readonly property color idleColor: isQuiet ? "transparent" : Theme.field
    property bool asks: false

    signal confirmed

    function close() {
        asks = false;
        first.forceActiveFocus();
    }

    spacing: Theme.grid
    Keys.onEscapePressed: event => {
        event.accepted = asks;
        if (asks)
            close();
    }

    Label {
        height: Theme.controlHeight
        rightPadding: Theme.grid
        visible: button.asks
        text: button.question
        color: Theme.secondaryText
        font.pixelSize: Theme.smallSize
    }

    ActionButton {
        visible: button.asks
        name: button.confirmName
        idleColor: button.idleColor
        textColor: Theme.error
        onTriggered: {
            button.close();
            button.confirmed();
        }
    }

    ActionButton {
        id: first

        property real widthBefore: 0

        width: Math.max(implicitWidth, button.asks ? widthBefore : 0)
        name: button.asks ? "Manter" : button.name
        idleColor: button.idleColor
        textColor: button.isQuiet && !button.asks && !hovered && !activeFocus ? Theme.secondaryText : Theme.text
        onTriggered: {
            widthBefore = width;
            button.asks = !button.asks;
        }
    }
}
