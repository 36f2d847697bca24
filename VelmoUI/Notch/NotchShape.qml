import QtQuick
import QtQuick.Shapes
import Velmo

/// The black body that hangs from the top edge between its two ears.
Shape {
    id: shape

    required property ShapeAnimator spec

    readonly property real ear: spec.topRadius
    readonly property real corner: Math.min(spec.bottomRadius, spec.coreWidth / 2, spec.height)
    readonly property real rightEdge: ear + spec.coreWidth

    width: spec.coreWidth + 2 * ear
    height: spec.height
    visible: spec.shapeVisible

    ShapePath {
        fillColor: Theme.shape
        strokeWidth: -1
        startX: 0
        startY: 0

        PathArc {
            x: shape.ear
            y: shape.ear
            radiusX: shape.ear
            radiusY: shape.ear
        }
        PathLine {
            x: shape.ear
            y: shape.height - shape.corner
        }
        PathArc {
            x: shape.ear + shape.corner
            y: shape.height
            radiusX: shape.corner
            radiusY: shape.corner
            direction: PathArc.Counterclockwise
        }
        PathLine {
            x: shape.rightEdge - shape.corner
            y: shape.height
        }
        PathArc {
            x: shape.rightEdge
            y: shape.height - shape.corner
            radiusX: shape.corner
            radiusY: shape.corner
            direction: PathArc.Counterclockwise
        }
        PathLine {
            x: shape.rightEdge
            y: shape.ear
        }
        PathArc {
            x: shape.rightEdge + shape.ear
            y: 0
            radiusX: shape.ear
            radiusY: shape.ear
        }
        PathLine {
            x: 0
            y: 0
        }
    }
}
