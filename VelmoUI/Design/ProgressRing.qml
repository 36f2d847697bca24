import QtQuick
import QtQuick.Shapes
import Velmo

/// How far something is, as a ring; nothing while it isn't known.
Item {
    id: ring

    required property real progress ///< 0 to 1, negative if unknown
    property color color: Theme.text
    property real lineWidth: 2.5

    implicitWidth: 16
    implicitHeight: 16
    visible: progress >= 0

    Accessible.role: Accessible.ProgressBar
    Accessible.name: Math.round(Math.max(progress, 0) * 100) + " %"

    Shape {
        anchors.fill: parent

        ShapePath {
            fillColor: "transparent"
            strokeColor: Theme.surfaceSelected
            strokeWidth: ring.lineWidth

            PathAngleArc {
                centerX: ring.width / 2
                centerY: ring.height / 2
                radiusX: (ring.width - ring.lineWidth) / 2
                radiusY: radiusX
                startAngle: 0
                sweepAngle: 360
            }
        }

        ShapePath {
            fillColor: "transparent"
            strokeColor: ring.color
            strokeWidth: ring.lineWidth
            capStyle: ShapePath.RoundCap

            PathAngleArc {
                centerX: ring.width / 2
                centerY: ring.height / 2
                radiusX: (ring.width - ring.lineWidth) / 2
                radiusY: radiusX
                startAngle: -90
                sweepAngle: 360 * Math.max(0, Math.min(1, ring.progress))
            }
        }
    }
}
