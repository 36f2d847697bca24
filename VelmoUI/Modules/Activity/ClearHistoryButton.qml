import QtQuick
import Velmo

/// "Limpar", which asks in place before it clears.
Row {
    id: clear

    property bool asks: false

    signal confirmed

    spacing: 2 * Theme.grid

    Label {
        height: Theme.controlHeight
        visible: clear.asks
        text: "Apagar o histórico de atividade?"
        color: Theme.secondaryText
        font.pixelSize: Theme.smallSize
    }

    ActionButton {
        visible: clear.asks
        name: "Apagar"
        textColor: Theme.error
        onTriggered: {
            clear.asks = false;
            clear.confirmed();
        }
    }

    ActionButton {
        name: clear.asks ? "Manter" : "Limpar"
        onTriggered: clear.asks = !clear.asks
    }
}
