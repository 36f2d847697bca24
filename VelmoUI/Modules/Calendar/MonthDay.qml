import QtQuick
import Velmo.Design

/// A day of the month at a glance. There are up to forty-two: whoever shows them takes the pointer.
Rectangle {
    id: day

    required property string id
    required property int number
    required property bool isInMonth
    required property bool isToday
    required property bool isSelected
    required property bool hasEvents
    required property string spoken
    property bool isHovered: false

    signal chosen

    radius: Theme.controlRadius
    color: isHovered ? Theme.surfaceHover : isSelected || isToday ? Theme.surfaceSelected : "transparent"
    Accessible.role: Accessible.Button
    Accessible.name: spoken
    Accessible.focusable: true
    Accessible.focused: activeFocus
    Accessible.onPressAction: chosen()
    Keys.onReturnPressed: chosen()
    Keys.onEnterPressed: chosen()
    Keys.onSpacePressed: chosen()

    Label {
        anchors.centerIn: parent
        anchors.verticalCenterOffset: day.hasEvents ? -2 : 0
        text: day.number
        color: day.isInMonth ? Theme.text : Theme.tertiaryText
        font.pixelSize: Theme.captionSize
        font.weight: day.isToday ? Font.DemiBold : Font.Normal
        Accessible.ignored: true
    }
    Rectangle {
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 2
        visible: day.hasEvents
        width: Theme.grid
        height: 2
        radius: 1
        color: Theme.accent
    }
    FocusRing {
        radius: day.radius
        shown: day.activeFocus
    }
}
