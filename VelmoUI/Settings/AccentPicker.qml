import QtQuick
import Velmo.Design
import Velmo.Settings

/// The accent colours, each with its name. The arrow keys go from one to the next.
FocusScope {
    id: picker

    required property string current
    readonly property list<string> names: ["silver", "yellow", "orange", "pink", "purple", "blue", "green"]
    readonly property list<string> titles: ["Prata", "Amarelo", "Laranja", "Rosa", "Roxo", "Azul", "Verde"]

    signal picked(string accent)

    function step(by: int) {
        const next = Math.max(0, Math.min(names.length - 1, names.indexOf(current) + by));
        if (names[next] !== current)
            picked(names[next]);
    }

    implicitWidth: row.width
    implicitHeight: Theme.controlHeight
    activeFocusOnTab: true
    Keys.onLeftPressed: step(-1)
    Keys.onRightPressed: step(1)
    Accessible.role: Accessible.Grouping
    Accessible.name: "Cor de destaque"

    FocusRing {
        anchors.margins: -Theme.ringWidth
        radius: height / 2
        shown: picker.activeFocus
    }

    Row {
        id: row

        Repeater {
            model: picker.names

            delegate: Item {
                id: swatch

                required property string modelData
                required property int index
                readonly property bool isCurrent: modelData === picker.current

                focus: isCurrent
                width: Theme.controlHeight
                height: Theme.controlHeight
                Accessible.role: Accessible.RadioButton
                Accessible.name: picker.titles[index]
                Accessible.checkable: true
                Accessible.checked: isCurrent
                Accessible.focusable: true
                Accessible.focused: activeFocus
                Accessible.onPressAction: picker.picked(modelData)

                Rectangle {
                    anchors.centerIn: parent
                    width: Theme.switchHeight
                    height: width
                    radius: width / 2
                    color: (Theme.isLight ? Theme.lightAccents : Theme.accents)[swatch.modelData]
                }
                Symbol {
                    anchors.centerIn: parent
                    visible: swatch.isCurrent
                    name: "checkmark"
                    size: Theme.bodySize
                    color: Theme.window
                }
                HoverHandler {
                    id: hover
                }
                TapHandler {
                    onTapped: {
                        picker.forceActiveFocus();
                        picker.picked(swatch.modelData);
                    }
                }
                Tip {
                    anchors.horizontalCenter: parent.horizontalCenter
                    y: -height - Theme.grid
                    shown: hover.hovered
                    text: picker.titles[swatch.index]
                }
            }
        }
    }
}
