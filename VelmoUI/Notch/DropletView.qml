import QtQuick
import Velmo.Design
import Velmo.Notch

/// The picture of a dropped thing on its way into the notch, and the notch's gulp. Where the user
/// wants less motion, the picture fades where it was dropped.
Item {
    id: droplet

    required property NotchContent content
    readonly property real endX: content.notchCenterX - flyer.width / 2
    readonly property real startX: content.drop.dropletStart.x - flyer.width / 2
    readonly property real startY: content.drop.dropletStart.y - flyer.height / 2

    Item {
        id: flyer
        width: 56
        height: 56
        visible: droplet.content.drop.hasDroplet

        Image {
            id: image
            anchors.fill: parent
            source: droplet.content.drop.dropletImage
            sourceSize.width: 112
            sourceSize.height: 112
            asynchronous: true
            fillMode: Image.PreserveAspectFit
        }
        Loader {
            anchors.centerIn: parent
            active: droplet.content.drop.hasDroplet && image.status !== Image.Ready
            sourceComponent: Symbol {
                name: droplet.content.drop.dropletSymbol
                size: Theme.tileSymbolSize
            }
        }
    }

    ParallelAnimation {
        running: droplet.content.drop.hasDroplet

        NumberAnimation {
            target: flyer
            property: "x"
            from: droplet.startX
            to: Theme.reducedMotion ? droplet.startX : droplet.endX
            duration: droplet.content.drop.dropletFlight
            easing.type: Easing.InOutQuad
        }
        NumberAnimation {
            target: flyer
            property: "y"
            from: droplet.startY
            to: Theme.reducedMotion ? droplet.startY : -flyer.height / 2
            duration: droplet.content.drop.dropletFlight
            easing.type: Easing.InBack
        }
        NumberAnimation {
            target: flyer
            property: "scale"
            from: 1
            to: Theme.reducedMotion ? 1 : 0.3
            duration: droplet.content.drop.dropletFlight
            easing.type: Easing.InQuad
        }
        NumberAnimation {
            target: flyer
            property: "opacity"
            from: 1
            to: Theme.reducedMotion ? 0 : 0.6
            duration: droplet.content.drop.dropletFlight
            easing.type: Easing.InQuad
        }
    }

    // The gulp: a glow that runs along the notch's lower edge and is gone. An open panel has no such
    // edge: there it would be a line across its content.
    Rectangle {
        id: glow
        objectName: "glow"
        x: droplet.content.notchCenterX - width / 2
        y: droplet.content.notchHeight - height
        width: droplet.content.notchWidth
        height: Theme.ringWidth
        radius: height / 2
        color: Theme.accent
        opacity: 0
        visible: opacity > 0 && droplet.content.presentation === NotchContent.Collapsed
    }

    SequentialAnimation {
        id: gulp

        ParallelAnimation {
            NumberAnimation {
                target: glow
                property: "opacity"
                from: 0
                to: 0.8
                duration: Theme.fadeOut
            }
            NumberAnimation {
                target: glow
                property: "width"
                from: Theme.reducedMotion ? droplet.content.notchWidth : 0
                to: droplet.content.notchWidth
                duration: Theme.fadeIn
                easing.type: Easing.OutCubic
            }
        }
        NumberAnimation {
            target: glow
            property: "opacity"
            to: 0
            duration: Theme.fadeIn
        }
    }

    Connections {
        target: droplet.content.drop
        function onGulped() {
            gulp.restart();
        }
    }
}
