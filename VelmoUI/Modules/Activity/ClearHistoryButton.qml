import QtQuick
import Velmo

/// "Limpar", which asks in place before it clears.
Row {
    id: clear

    property bool asks: false

    signal confirmed

    Label {
        height: Theme.controlHeight
        rightPadding: 2 * Theme.grid
        visible: clear.asks
        text: "Apagar o histórico de atividade?"
        color: Theme.secondaryText
        font.pixelSize: Theme.smallSize
    }

    ActionButton {
        visible: clear.asks
        name: "Apagar"
        idleColor: "transparent"
        textColor: Theme.error
        onTriggered: {
            clear.asks = false;
            clear.confirmed();
        }
    }

    ActionButton {
        name: clear.asks ? "Manter" : "Limpar"
        idleColor: "transparent"
        textColor: clear.asks || hovered || activeFocus ? Theme.text : Theme.secondaryText
        onTriggered: clear.asks = !clear.asks
    }
}
