import QtQuick
import Velmo.Design

/// One of a few choices, side by side. The arrow keys go from one to the next.
FocusScope {
    id: picker

    /// What a screen reader says.
    required property string name
    /// What the user reads of each choice.
    required property var options
    /// Names of symbols before the options, if any.
    property var symbols: []
    /// The place of the choice; negative for none of them.
    required property int current

    signal picked(int index)

    function step(by: int) {
        const next = Math.max(0, Math.min(options.length - 1, current + by));
        if (next !== current)
            picked(next);
    }

    implicitWidth: row.width
    implicitHeight: Theme.controlHeight
    activeFocusOnTab: true
    opacity: enabled ? 1 : 0.4
    Keys.onLeftPressed: step(-1)
    Keys.onRightPressed: step(1)
    Accessible.role: Accessible.Grouping
    Accessible.name: name

    Rectangle {
        anchors.fill: row
        radius: Theme.controlRadius
        color: Theme.field

        FocusRing {
            radius: parent.radius
            shown: picker.activeFocus
        }
    }

    Row {
        id: row

        Repeater {
            model: picker.options

            delegate: Rectangle {
                id: choice

                required property string modelData
                required property int index
                readonly property bool isCurrent: index === picker.current

                // The choice has the picker's keyboard, so that a screen reader says which it is.
                focus: isCurrent
                width: content.width + 2 * Theme.cardPadding
                height: Theme.controlHeight
                radius: Theme.controlRadius
                color: isCurrent ? Theme.surfaceSelected
                     : hover.hovered ? Theme.raise(Theme.field, Theme.hoverShare) : Theme.field
                Accessible.role: Accessible.RadioButton
                Accessible.name: modelData
                Accessible.checkable: true
                Accessible.checked: isCurrent
                Accessible.focusable: true
                Accessible.focused: activeFocus
                Accessible.onPressAction: picker.picked(choice.index)

                Behavior on color {
                    ColorAnimation {
                        duration: Theme.hover
                    }
                }

                Row {
                    id: content
                    anchors.centerIn: parent
                    spacing: Theme.grid

                    Symbol {
                        visible: choice.index < picker.symbols.length && name.length > 0
                        height: label.height
                        name: picker.symbols[choice.index] ?? ""
                        size: Theme.smallSymbolSize
                        color: label.color
                    }
                    Label {
                        id: label
                        text: choice.modelData
                        color: choice.isCurrent ? Theme.text : Theme.secondaryText
                        font.pixelSize: Theme.smallSize
                        font.weight: choice.isCurrent ? Font.Medium : Font.Normal
                        Accessible.ignored: true
                    }
                }
                HoverHandler {
                    id: hover
                }
                TapHandler {
                    onTapped: {
                        picker.forceActiveFocus();
                        picker.picked(choice.index);
                    }
                }
            }
        }
    }
}
