import QtQuick
import Velmo.Design
import Velmo.Notch

/// How far the first live activity is: its time, a ring, or a dot where it knows neither.
Item {
    id: sign

    required property NotchContent content
    readonly property bool countsTime: content.live.shortTime.length > 0
    readonly property bool hasProgress: !countsTime && content.live.progress >= 0

    implicitWidth: countsTime ? time.implicitWidth : hasProgress ? ring.width : dot.width

    ProgressRing {
        id: ring
        anchors.centerIn: parent
        width: Theme.smallSymbolSize
        height: Theme.smallSymbolSize
        visible: sign.hasProgress
        progress: sign.content.live.progress
        color: Theme.accent
        trackColor: Theme.surfaceSelected
    }

    NumberLabel {
        id: time
        anchors.centerIn: parent
        visible: sign.countsTime
        text: sign.content.live.shortTime
        size: Theme.captionSize
    }

    // Neither time nor progress: a quiet sign that it goes on.
    Rectangle {
        id: dot
        anchors.centerIn: parent
        width: Theme.grid + 2
        height: width
        radius: width / 2
        visible: !sign.countsTime && !sign.hasProgress
        color: Theme.accent
    }
}
