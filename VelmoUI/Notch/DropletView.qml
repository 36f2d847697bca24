import QtQuick
import Velmo

/// The picture of a dropped thing on its way into the notch, and the notch's gulp.
Item {
    id: droplet

    required property NotchContent content

    Item {
        id: flyer
        width: 56
        height: 56
        visible: droplet.content.hasDroplet

        Image {
            id: image
            anchors.fill: parent
            source: droplet.content.dropletImage
            sourceSize: Qt.size(112, 112)
            asynchronous: true
            fillMode: Image.PreserveAspectFit
        }
        Symbol {
            anchors.centerIn: parent
            visible: image.status !== Image.Ready
            name: droplet.content.dropletSymbol
            size: 40
        }
    }

    ParallelAnimation {
        id: flight
        running: droplet.content.hasDroplet

        NumberAnimation {
            target: flyer
            property: "x"
            from: droplet.content.dropletStart.x - flyer.width / 2
            to: droplet.content.notchCenterX - flyer.width / 2
            duration: droplet.content.dropletFlight
            easing.type: Easing.InOutQuad
        }
        NumberAnimation {
            target: flyer
            property: "y"
            from: droplet.content.dropletStart.y - flyer.height / 2
            to: -flyer.height / 2
            duration: droplet.content.dropletFlight
            easing.type: Easing.InBack
        }
        NumberAnimation {
            target: flyer
            property: "scale"
            from: 1
            to: 0.3
            duration: droplet.content.dropletFlight
            easing.type: Easing.InQuad
        }
    }

    // The gulp: a glow that runs along the notch's lower edge and is gone.
    Rectangle {
        id: glow
        x: droplet.content.notchCenterX - width / 2
        y: droplet.content.notchHeight - height / 2
        width: droplet.content.notchWidth
        height: 3
        radius: 1.5
        color: Theme.accents[droplet.content.accent]
        opacity: 0
        visible: opacity > 0
    }

    SequentialAnimation {
        id: gulp

        ParallelAnimation {
            NumberAnimation {
                target: glow
                property: "opacity"
                from: 0
                to: 0.8
                duration: 90
            }
            NumberAnimation {
                target: glow
                property: "width"
                from: 24
                to: droplet.content.notchWidth
                duration: 220
                easing.type: Easing.OutCubic
            }
        }
        NumberAnimation {
            target: glow
            property: "opacity"
            to: 0
            duration: 180
        }
    }

    Connections {
        target: droplet.content
        function onGulped() {
            gulp.restart();
        }
    }
}
