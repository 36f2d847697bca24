pragma Singleton

import QtQuick

/// Colours, type, spacing and motion: the only place of such numbers.
QtObject {
    id: theme

    /// The user's choices, set by the panels.
    property string accentName: "silver"
    property bool animated: true
    property bool reducedMotion: false
    property real pace: 1

    readonly property color shape: "#000000"
    readonly property color shapeEdge: "#00000000"
    readonly property color text: "#ebffffff"
    readonly property color secondaryText: "#99ffffff"
    readonly property color tertiaryText: "#66ffffff"
    readonly property color surface: "#0fffffff"
    readonly property color surfaceHover: "#1affffff"
    readonly property color surfacePressed: "#24ffffff"
    readonly property color surfaceSelected: "#29ffffff"
    readonly property color hairline: "#14ffffff"
    /// Over other content, so not to be seen through.
    readonly property color tip: "#2b2b2e"

    readonly property color success: "#4cd58a"
    readonly property color error: "#ff6b62"
    readonly property color warning: "#ff9f43"
    readonly property var accents: ({
        "silver": "#c9ced6",
        "yellow": "#ffd54a",
        "orange": "#ff9f43",
        "pink": "#ff6b9a",
        "purple": "#b58cff",
        "blue": "#5aa9ff",
        "green": "#4cd58a"
    })
    readonly property color accent: accents[accentName]
    /// Colour by the style of an event; info takes the plain text's.
    readonly property var styles: ({
        "success": success,
        "error": error,
        "info": secondaryText
    })

    readonly property string face: "Inter"
    readonly property string symbolFace: "Material Icons"
    readonly property int captionSize: 11
    readonly property int smallSize: 12
    readonly property int bodySize: 13
    readonly property int titleSize: 15
    readonly property int numberSize: 20
    readonly property int bigNumberSize: 28

    readonly property int grid: 4
    readonly property int gap: 10
    readonly property int cardPadding: 12
    readonly property int cardRadius: 14
    readonly property int controlRadius: 8
    readonly property int controlHeight: 28
    readonly property int tabWidth: 30
    readonly property int smallSymbolSize: 16
    readonly property int symbolSize: 20
    readonly property int tileSymbolSize: 40
    readonly property int leastTileWidth: 128
    readonly property int barHeight: 4
    readonly property int ringWidth: 2
    readonly property int fadeWidth: 32

    /// Milliseconds at the user's pace.
    readonly property int contentDelay: animated ? 120 * pace : 0
    readonly property int fadeIn: animated ? 160 * pace : 0
    readonly property int fadeOut: animated ? 80 * pace : 0
    readonly property int hover: animated ? 100 : 0
    /// For what changes place or length; fades go on where the user wants less motion.
    readonly property int glide: animated && !reducedMotion ? 160 * pace : 0
    readonly property int tipDelay: 500
    readonly property int contentRise: reducedMotion ? 0 : 6

    readonly property int shadowBlur: 32
    readonly property int shadowDrop: 8
    readonly property int shadowCorner: 28
    readonly property real shadowOpacity: 0.45
}
