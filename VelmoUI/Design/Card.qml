import QtQuick
import Velmo.Design

/// A surface in a list of cards. The list's arrow keys go from card to card, Tab to the controls in
/// them.
FocusScope {
    id: card

    /// What a screen reader says.
    required property string name
    default property alias content: body.data
    readonly property bool hovered: hover.hovered
    readonly property bool isRinged: activeFocus && Window.activeFocusItem === card

    Keys.onTabPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
    Accessible.role: Accessible.ListItem
    Accessible.name: name
    Accessible.focusable: true
    Accessible.focused: isRinged

    CardSurface {
        id: body
        anchors.fill: parent
        color: card.hovered ? Theme.surfaceHover : Theme.surface

        Behavior on color {
            ColorAnimation {
                duration: Theme.hover
            }
        }
    }

    FocusRing {
        radius: Theme.cardRadius
        shown: card.isRinged
    }

    HoverHandler {
        id: hover
    }
}
