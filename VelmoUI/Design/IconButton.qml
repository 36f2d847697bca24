import QtQuick
import Velmo.Design

/// A button that is only a symbol.
ControlSurface {
    id: button

    required property string symbol
    property color symbolColor: hovered || activeFocus ? Theme.text : Theme.secondaryText

    implicitWidth: Theme.controlHeight
    implicitHeight: Theme.controlHeight
    radius: height / 2

    Symbol {
        anchors.centerIn: parent
        name: button.symbol
        size: Theme.smallSymbolSize
        color: button.symbolColor
    }
}
